// Personality data between a data file and its items: every item of a network as one text, whatever
// its records, and back into records.
#pragma once

#include <string>
#include <string_view>
#include <tl/expected.hpp>
#include <vector>

#include "conversion/item_bytes.h"
#include "radiodb/data_file.h"
#include "services/problem.h"

namespace zep::conversion {

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

// The data of a file; what is wrong with it when it is not sound in every record.
tl::expected<PersonalityData, services::Problem> ReadDatabase(const radiodb::DataFile& file);

// A file of the data, in the order of the file that it was read from, behind these header lines. An
// item that kept its length keeps its records; any other is cut anew, and a new item comes last in
// its network.
radiodb::DataFile WriteDatabase(const PersonalityData& data, std::string path,
                                std::vector<std::string> header);

// Adds the item's data as records of at most 32 bytes, counted "00" to "99" and on from "00" in
// their second header byte.
void AddRecords(std::string_view item_number, std::string_view data, radiodb::DataFile& file);

}  // namespace zep::conversion
