#include "platform/settings_hive.h"

#include "platform/advice.h"
#include "platform/files.h"
#include "platform/lock_file.h"
#include "platform/settings_text.h"

namespace zep::platform {
namespace {

// A settings file of this size is none.
constexpr std::uint64_t kLargestSettingsFile = 4U << 20;

class FileHive final : public SettingsHive {
 public:
  FileHive(std::string path, Duration longest_lock)
      : path_(std::move(path)), longest_lock_(longest_lock) {}

  std::optional<std::string> Read(std::string_view key, std::string_view name) const override {
    return SettingsText(Load().bytes).Find(key, name);
  }
  SystemError Write(std::string_view key, std::string_view name, std::string_view value) override;
  SystemError Problem() const override;

 private:
  FileContents Load() const;
  LockState Lock(LockFile& lock) const;
  std::string NameForDamaged(std::string_view contents) const;

  std::string path_;
  Duration longest_lock_;
};

// A file that does not exist is an empty one.
FileContents FileHive::Load() const {
  if (!FileExists(path_) && !IsFolder(path_)) return {};
  return ReadWholeFile(path_, kLargestSettingsFile);
}

// Waits for other programs, which hold the lock for a few milliseconds at a time.
LockState FileHive::Lock(LockFile& lock) const {
  using namespace std::chrono_literals;
  SystemClock clock;
  const Duration end = clock.Now() + longest_lock_;
  LockState state = lock.TryAcquire(path_ + ".lock");
  while (state == LockState::kHeldByAnother && clock.Now() < end) {
    clock.Sleep(2ms);
    state = lock.TryAcquire(path_ + ".lock");
  }
  return state;
}

// The first free name; the name of an earlier copy when that is the same.
std::string FileHive::NameForDamaged(std::string_view contents) const {
  std::string name = path_ + ".damaged";
  for (int number = 2; FileExists(name) && ReadWholeFile(name).bytes != contents; ++number) {
    name = path_ + ".damaged" + std::to_string(number);
  }
  return name;
}

SystemError FileHive::Write(std::string_view key, std::string_view name, std::string_view value) {
  if (!SettingsText::CanHold(key, name)) {
    return WithAdvice(MakeSystemError(std::make_error_code(std::errc::invalid_argument), path_),
                      Advice::kSettingName, {std::string(key), std::string(name)});
  }
  if (const std::size_t end = path_.find_last_of("/\\"); end != path_.npos) {
    if (SystemError error = MakeFolders(path_.substr(0, end + 1))) return error;
  }
  LockFile lock;
  if (Lock(lock) == LockState::kHeldByAnother) {
    return WithAdvice(lock.Error(), Advice::kSettingsLocked, {path_});
  }
  // Without any lock the setting is still worth saving; if the folder is at fault the write tells.
  const FileContents present = Load();
  if (present.error) return present.error;
  SettingsText text(present.bytes);
  if (text.IsDamaged()) {
    SystemError error = WriteWholeFile(NameForDamaged(present.bytes), present.bytes);
    if (error) return error;
  }
  text.Set(key, name, value);
  return WriteWholeFile(path_, text.Contents());
}

SystemError FileHive::Problem() const {
  const FileContents present = Load();
  if (present.error || !SettingsText(present.bytes).IsDamaged()) return present.error;
  return WithAdvice(MakeSystemError(std::make_error_code(std::errc::bad_message), path_),
                    Advice::kSettingsDamaged, {path_, NameForDamaged(present.bytes)});
}

}  // namespace

std::unique_ptr<SettingsHive> MakeFileHive(std::string path, Duration longest_lock) {
  return std::make_unique<FileHive>(std::move(path), longest_lock);
}

std::optional<std::string> MemoryHive::Read(std::string_view key, std::string_view name) const {
  const auto found = values_.find({LowerCase(key), LowerCase(name)});
  if (found == values_.end()) return std::nullopt;
  return found->second;
}

SystemError MemoryHive::Write(std::string_view key, std::string_view name, std::string_view value) {
  values_[{LowerCase(key), LowerCase(name)}] = value;
  return {};
}

}  // namespace zep::platform
