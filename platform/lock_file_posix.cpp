#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include "platform/lock_file.h"

namespace zep::platform {

LockState LockFile::TryAcquire(const std::string& path) {
  Release();
  error_ = {};
  // Reading is enough for a lock, and works when another user has made the file.
  const int file = open(path.c_str(), O_RDONLY | O_CREAT | O_CLOEXEC | O_NOCTTY | O_NOFOLLOW, 0666);
  if (file < 0) {
    error_ = LastSystemError(path);
    return LockState::kFailed;
  }
  if (flock(file, LOCK_EX | LOCK_NB) == 0) {
    handle_ = file;
    return LockState::kAcquired;
  }
  error_ = LastSystemError(path);
  close(file);
  return error_.number == EWOULDBLOCK ? LockState::kHeldByAnother : LockState::kFailed;
}

void LockFile::Release() {
  if (handle_ >= 0) close(static_cast<int>(handle_));
  handle_ = -1;
}

}  // namespace zep::platform
