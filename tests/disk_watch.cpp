#include "tests/disk_watch.h"

#include <dlfcn.h>
#include <filesystem>
#include <utility>

#include <gtest/gtest.h>  // brings the POSIX calls along

namespace zep::testing {
namespace {

namespace fs = std::filesystem;

bool is_watching = false;
std::string calls;

std::string NameOf(const fs::path& path) {
  std::string name = path.filename().string();
  const std::string number = "." + std::to_string(getpid());
  const std::size_t at = name.find(number);
  return at == name.npos ? name : name.replace(at, number.size(), ".PID");
}

void NoteSync(int file) {
  const fs::path path = fs::read_symlink("/proc/self/fd/" + std::to_string(file));
  calls += "sync ";
  calls += fs::is_regular_file(path)
               ? NameOf(path) + " " + std::to_string(fs::file_size(path)) + " bytes\n"
               : "folder\n";
}

// The C library's own procedure of that name.
template <typename Procedure>
Procedure* Original(const char* name) {
  return reinterpret_cast<Procedure*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

DiskWatch::DiskWatch() {
  calls.clear();
  is_watching = true;
}

DiskWatch::~DiskWatch() { is_watching = false; }

std::string DiskWatch::Take() { return std::exchange(calls, {}); }

}  // namespace zep::testing

// The two below take the place of the C library's in the test program: they write the call down,
// then do the same.

// NOLINTBEGIN(readability-identifier-naming,readability-inconsistent-declaration-parameter-name)
extern "C" int fsync(int file) {
  if (zep::testing::is_watching) zep::testing::NoteSync(file);
  return zep::testing::Original<int(int)>("fsync")(file);
}

extern "C" int rename(const char* from, const char* to) noexcept {
  using zep::testing::NameOf;
  if (zep::testing::is_watching)
    zep::testing::calls += "rename " + NameOf(from) + " " + NameOf(to) + "\n";
  return zep::testing::Original<int(const char*, const char*)>("rename")(from, to);
}
// NOLINTEND(readability-identifier-naming,readability-inconsistent-declaration-parameter-name)
