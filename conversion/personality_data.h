// Personality data between a data file and its items: every item of a network as one text, whatever
// its records, and back into records.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "radiodb/data_file_reader.h"
#include "services/session.h"
#include "upgrade/item_bytes.h"

namespace zep::upgrade {

// A line of the file in its place: a record, of which the item's data is kept elsewhere, or, with
// other_text, any other line.
struct PersonalityLine {
  std::size_t item = 0;
  std::string header = {};     // item number, second header byte, length
  std::size_t characters = 0;  // of data
  std::string other_text = {};
};

struct PersonalityNetwork {
  ItemArray items;
  std::vector<PersonalityLine> lines;
};

// Only the first "00" line of the file is item 0, the radio's configuration. Any further one is
// carried along as it is, like the lines that are no records.
struct PersonalityData {
  std::vector<PersonalityNetwork> networks;
};

// Reads a data file. A file that cannot be read or is not sound in every record is reported and
// gives nothing; session.failure is set.
std::optional<PersonalityData> ReadDatabase(services::Session& session, const std::string& path);

// The same from the lines of a sound file.
PersonalityData ItemsOf(services::Session& session, const radiodb::DataFile& file);

// Writes the data in the order of the file that it was read from, behind a header of its own. An
// item that kept its length keeps its records; any other is cut anew, and a new item comes last in
// its network. The folder is made when missing; the file is replaced as a whole or not at all.
// False, after a report, when it could not be written.
bool WriteDatabase(services::Session& session, const PersonalityData& data,
                   const std::string& path);

// Appends the item's data to text as records of at most 32 bytes, a line each, counted "00" to
// "99" and on from "00" in their second header byte.
void AppendRecords(std::string_view item_number, std::string_view data, std::string& text);

}  // namespace zep::upgrade
