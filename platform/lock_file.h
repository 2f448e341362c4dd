// A lock between programs, in the shape of a file. The operating system releases it when its holder
// ends, however that comes about; the file itself may stay behind and means nothing.
#pragma once

#include <cstdint>
#include <string>

#include "platform/system_error.h"

namespace zep::platform {

enum class LockState { kAcquired, kHeldByAnother, kFailed };

class LockFile {
 public:
  LockFile() = default;
  ~LockFile() { Release(); }
  LockFile(const LockFile&) = delete;
  LockFile& operator=(const LockFile&) = delete;

  // Does not wait. The folder must exist; kFailed when the file cannot be made, Error() tells why.
  LockState TryAcquire(const std::string& path);
  void Release();

  const SystemError& Error() const { return error_; }

 private:
  std::intptr_t handle_ = -1;
  SystemError error_;
};

}  // namespace zep::platform
