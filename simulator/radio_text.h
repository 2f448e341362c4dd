// Simulated radios as text, on command lines and in device names:
//
//   [sim:]RADIO[,OPTION[=VALUE]]... sim:trunked,networks=2,item0=58,fault=silent@block:10,unpaced
//
// RADIO is one of KnownRadios(); the options change what it brings along and are applied from left
// to right.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "simulator/parsed.h"
#include "simulator/radio_profile.h"

namespace zep::simulator {

inline constexpr std::string_view kSimulatedPrefix = "sim:";

Parsed<RadioProfile> ParseRadio(std::string_view text);

// One option for the help.
struct RadioOptionHelp {
  std::string_view name;
  std::string_view value;  // the form of its value; empty when it takes none
  std::string_view meaning;
};
std::vector<RadioOptionHelp> RadioOptions();

}  // namespace zep::simulator
