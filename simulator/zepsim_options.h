// The command line of zepsim.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "simulator/radio_profile.h"

namespace zep::simulator {

struct ZepsimOptions {
  std::vector<RadioProfile> radios;  // one to four; none when only samples are wanted
  std::string link;
  std::string ready_file;
  std::string transcript;
  std::string compare;     // an image
  std::string save_flash;  // a folder
  std::string samples;     // a folder
  double idle = 0;         // end so many seconds after the last byte; 0: do not
  double longest = 0;      // end after so many seconds; 0: do not
};

struct ZepsimCommandLine {
  ZepsimOptions options;
  // There is nothing to do but to show the text and to end with this status: help, or an error.
  std::optional<int> exit_status;
  std::string text;
};

ZepsimCommandLine ParseZepsimCommandLine(std::vector<std::string> arguments);

}  // namespace zep::simulator
