// What is known of the radio whose database is being read or programmed, and of its files.
#pragma once

#include <string>
#include <vector>

#include "link/port_set.h"
#include "radiodb/data_file.h"
#include "radiodb/radio_identity.h"

namespace zep::radiodb {

// Which items a transfer takes, and how a read names its files.
enum class TransferKind {
  kChosenFile = 0,   // all but calibration; the user chooses the data file
  kAutoSave = 1,     // all but calibration; under the default name
  kCalibration = 2,  // calibration only
  kBoth = 3,         // everything, into a data file and a calibration file
};

struct RadioDb {
  explicit RadioDb(link::Link& the_link) : link(the_link) {}

  link::Link& link;
  RadioIdentity identity;  // as last read

  TransferKind transfer_kind = TransferKind::kChosenFile;
  int number_of_networks = 1;  // of the running transfer
  bool writing_begun = false;  // programming has come to where it changes the radio
  int current_network = 1;
  bool common_dynamic_item_skipped = false;  // by the last read

  // Default-named files replace existing ones without a question.
  bool overwrite_allowed = false;
  // Files that an upgrade in another program relies on; a read makes none of them anew.
  std::vector<std::string> files_in_use;
  // Folders for default-named files; empty: those of the settings.
  std::string database_folder;
  std::string calibration_folder;
  // A name for the calibration file in place of the default one; may be empty.
  std::string chosen_calibration_file;

  // Full names of the files that the last read wrote, or of the data file last programmed.
  std::string data_file;
  std::string calibration_file;
  // What the last read has put into them; empty where there is no such file.
  DataFile data;
  DataFile calibration;
};

}  // namespace zep::radiodb
