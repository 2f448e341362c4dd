// What reaches the disk for certain, and in which order: the calls of the operating system that
// make a file safe, as the code under test makes them.
//
//   DiskWatch disk;
//   WriteWholeFile(path, "bytes");
//   EXPECT_EQ(disk.Take(), "sync a.ops.PID.tmp 5 bytes\n"
//                          "rename a.ops.PID.tmp a.ops\n"
//                          "sync folder\n");
#pragma once

#include <string>

namespace zep::testing {

// One at a time.
class DiskWatch {
 public:
  DiskWatch();
  ~DiskWatch();
  DiskWatch(const DiskWatch&) = delete;
  DiskWatch& operator=(const DiskWatch&) = delete;

  // The calls so far, a line each, and forgets them. Files are named without their folders, and
  // with as many bytes as the system has of them at that moment.
  static std::string Take();
};

}  // namespace zep::testing
