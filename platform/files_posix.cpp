#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

#include "platform/files_native.h"

namespace zep::platform {
namespace {

struct Flags {
  int open;
  const char* stdio;
};

Flags FlagsOf(OpenMode mode) {
  switch (mode) {
    case OpenMode::kReplace:
      return {O_WRONLY | O_CREAT | O_TRUNC, "wb"};
    case OpenMode::kAppend:
      return {O_WRONLY | O_CREAT | O_APPEND, "ab"};
    case OpenMode::kNew:
      return {O_WRONLY | O_CREAT | O_EXCL, "wb"};
    case OpenMode::kRead:
      break;
  }
  return {O_RDONLY, "rb"};
}

}  // namespace

std::filesystem::path NativePath(const std::string& utf8) { return utf8; }

std::string Utf8Path(const std::filesystem::path& path) { return path.native(); }

std::FILE* OpenStdio(const std::string& path, OpenMode mode) {
  const Flags flags = FlagsOf(mode);
  // Only the open itself must not wait: that of a pipe without a reader would do so for ever.
  const int file = open(path.c_str(), flags.open | O_CLOEXEC | O_NOCTTY | O_NONBLOCK, 0666);
  if (file < 0) return nullptr;
  fcntl(file, F_SETFL, flags.open & O_APPEND);
  return fdopen(file, flags.stdio);
}

bool SyncToDisk(std::FILE* file) {
  // A device has no disk behind it.
  return fsync(fileno(file)) == 0 || errno == EINVAL || errno == ENOTSUP;
}

void SyncFolder(const std::string& folder) {
  const int file = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (file < 0) return;
  fsync(file);
  close(file);
}

bool MayWrite(const std::string& path) {
  return faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) == 0;
}

int ProcessNumber() { return getpid(); }

}  // namespace zep::platform
