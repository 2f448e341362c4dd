// Where settings are stored: values with names under keys such as "Software\Vorn Electronics
// Ltd\ZEP\Download". Windows has its registry, other systems one text file a hive. Keys and names
// are the same whatever their case.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/clock.h"
#include "platform/system_error.h"

namespace zep::platform {

class SettingsHive {
 public:
  virtual ~SettingsHive() = default;

  // The stored text; nothing when there is no such value or it cannot be read.
  virtual std::optional<std::string> Read(std::string_view key, std::string_view name) const = 0;
  virtual SystemError Write(std::string_view key, std::string_view name,
                            std::string_view value) = 0;

  // What is wrong with the storage as a whole, although reading goes on with what can be read;
  // advice tells what became of the rest. Number 0 when nothing is.
  virtual SystemError Problem() const { return {}; }
};

// The hive of the user: HKEY_CURRENT_USER, or settings.ini in the user's configuration folder.
std::unique_ptr<SettingsHive> OpenUserHive();

// The hive of the whole machine: HKEY_LOCAL_MACHINE, or settings.ini in /etc/xdg/zepdlca.
std::unique_ptr<SettingsHive> OpenMachineHive();

// A hive in a text file, which need not exist yet:
//
//   ; a comment
//   [Software\Vorn Electronics Ltd\ZEP\Download]
//   CommPort1State=1
//
// UTF-8. In a value \\ is a backslash and \xHH the byte with these two hex digits, for what a line
// cannot hold as it is (control characters, a blank at either end). Comments and the order of lines
// are kept. Every read sees what other programs have written; a write locks the file, so that two
// programs keep each other's values, and replaces it at once, so that it is never half written. Of
// a damaged file, what can be read is used; before the first write its original is kept beside it
// as PATH.damaged.
std::unique_ptr<SettingsHive> MakeFileHive(std::string path,
                                           Duration longest_lock = std::chrono::seconds(2));

// A hive that is forgotten when the program ends; for tests and for trying things out.
class MemoryHive final : public SettingsHive {
 public:
  std::optional<std::string> Read(std::string_view key, std::string_view name) const override;
  SystemError Write(std::string_view key, std::string_view name, std::string_view value) override;

 private:
  // By key and name, lower case.
  std::map<std::pair<std::string, std::string>, std::string> values_;
};

}  // namespace zep::platform
