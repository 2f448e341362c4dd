// The item record protocol: how the numbered items of a radio's database are listed, read and
// written, with the commands of a radio in programming mode.
//
// Everything here talks with the first Active port and ends early when the session is stopped. What
// a record is made of: link/record.h.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "radiodb/data_file.h"
#include "radiodb/data_files.h"
#include "radiodb/radio_db.h"
#include "radiodb/read_write_view.h"

namespace zep::radiodb {

// Whether a transfer of this kind takes the item (two hex digits) from or to a radio of this type.
bool IsItemSelected(RadioType type, TransferKind kind, std::string_view item);

// Items "32" and "33" of some radios are common to all networks: they are read with the last one.
bool IsLeftForLastNetwork(const RadioDb& db, int network, std::string_view item);

// The numbers of the items in a network, two hex digits each. Nothing when the session was stopped.
//
//   sends "d0" network CR   expects ">"          several networks only
//   sends "l" CR            expects the item list, ">"
std::optional<std::string> ListItems(const RadioDb& db, int network);

// Shows the text with one to six dots, one more with each call.
void UpdateStatusBar(services::Session& session, ReadWriteView& view, std::string text);

// Reads the whole radio into the files, network by network where it has several. False when it
// ended early or a file would hold no item; the user has been told.
bool ReadAllItems(RadioDb& db, ReadWriteView& view, ReadFiles& files);

// Reads every selected item of the list into the files.
//
//   sends "r" item CR       expects record CR { record CR } ">"     for each item in list order
//
// A record with a wrong checksum is reported, kept, and ends the read.
void ReadItemList(RadioDb& db, ReadWriteView& view, std::string_view item_list, ReadFiles& files);

// Programs the file's records of db.transfer_kind. False when it ended early; a file with more than
// four networks is refused before anything is sent.
//
//   sends "d0" network CR   expects ">"          trunked radios only
//   sends "b" CR            expects ">"
//   sends "w" record CR     expects ">"          for each record
//   sends "e" CR            expects ">"
bool WriteItems(RadioDb& db, ReadWriteView& view, const DataFile& file);

}  // namespace zep::radiodb
