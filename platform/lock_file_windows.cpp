#include <windows.h>

#include "platform/lock_file.h"
#include "platform/wide_text.h"

namespace zep::platform {

LockState LockFile::TryAcquire(const std::string& path) {
  Release();
  error_ = {};
  const HANDLE file = CreateFileW(Widen(path).c_str(), GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS,
                                  FILE_FLAG_DELETE_ON_CLOSE, nullptr);
  if (file != INVALID_HANDLE_VALUE) {
    handle_ = reinterpret_cast<std::intptr_t>(file);
    return LockState::kAcquired;
  }
  error_ = LastSystemError(path);
  return error_.number == ERROR_SHARING_VIOLATION ? LockState::kHeldByAnother : LockState::kFailed;
}

void LockFile::Release() {
  // NOLINTNEXTLINE(performance-no-int-to-ptr): a handle is a number that has the type of a pointer
  if (handle_ != -1) CloseHandle(reinterpret_cast<HANDLE>(handle_));
  handle_ = -1;
}

}  // namespace zep::platform
