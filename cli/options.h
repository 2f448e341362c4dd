// The options that every command takes.
#pragma once

#include <string>
#include <vector>

namespace zep::cli {

struct Options {
  std::vector<std::string> ports;  // [N=]DEVICE, as typed
  std::string application_folder;
  std::string string_table = "ZEP";
  std::string language;  // empty: as the settings say
  std::string trace;     // file; empty: no trace
  bool yes = false;
  bool no = false;
  bool in_house = false;
  bool json = false;
  bool quiet = false;
};

}  // namespace zep::cli
