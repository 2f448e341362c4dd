#include <windows.h>
#include <fcntl.h>
#include <io.h>
#include <process.h>
#include <sys/stat.h>

#include "platform/files_native.h"
#include "platform/wide_text.h"

namespace zep::platform {
namespace {

struct Flags {
  int open;
  const char* stdio;
};

Flags FlagsOf(OpenMode mode) {
  switch (mode) {
    case OpenMode::kReplace:
      return {_O_WRONLY | _O_CREAT | _O_TRUNC, "wb"};
    case OpenMode::kAppend:
      return {_O_WRONLY | _O_CREAT | _O_APPEND, "ab"};
    case OpenMode::kNew:
      return {_O_WRONLY | _O_CREAT | _O_EXCL, "wb"};
    case OpenMode::kRead:
      break;
  }
  return {_O_RDONLY, "rb"};
}

}  // namespace

std::filesystem::path NativePath(const std::string& utf8) { return Widen(utf8); }

std::string Utf8Path(const std::filesystem::path& path) { return Narrow(path.native()); }

std::FILE* OpenStdio(const std::string& path, OpenMode mode) {
  const Flags flags = FlagsOf(mode);
  const int file =
      _wopen(Widen(path).c_str(), flags.open | _O_BINARY | _O_NOINHERIT, _S_IREAD | _S_IWRITE);
  return file < 0 ? nullptr : _fdopen(file, flags.stdio);
}

bool SyncToDisk(std::FILE* file) { return _commit(_fileno(file)) == 0; }

void SyncFolder(const std::string&) {}

bool MayWrite(const std::string& path) {
  const std::wstring name = Widen(path);
  const DWORD attributes = GetFileAttributesW(name.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) return false;
  if ((attributes & FILE_ATTRIBUTE_DIRECTORY) == 0)
    return (attributes & FILE_ATTRIBUTE_READONLY) == 0;
  // The rights to a folder are known for sure only by using them.
  const std::wstring probe = name + L"\\~zep" + std::to_wstring(ProcessNumber()) + L".tmp";
  const HANDLE file = CreateFileW(probe.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                  FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  CloseHandle(file);
  return true;
}

int ProcessNumber() { return _getpid(); }

}  // namespace zep::platform
