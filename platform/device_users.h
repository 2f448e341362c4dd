// Which programs have a device open. Linux only.
#pragma once

#include <string>
#include <vector>

namespace zep::platform {

// For each device the name and process number of a program that has it open, as in "minicom
// (4711)"; empty where none is known: programs of other users cannot be seen unless they have
// locked the device.
std::vector<std::string> ProgramsUsing(const std::vector<std::string>& devices);

// The live program, other than this one, that has claimed the device by a lock file in /var/lock,
// as some terminal programs do; empty when there is none.
std::string LockFileHolder(const std::string& device);

}  // namespace zep::platform
