// One running copy of a program for each user.
#pragma once

#include <string>
#include <utility>

#include "platform/lock_file.h"

namespace zep::platform {

class SingleInstance {
 public:
  // The program's name is that of its lock; folder is where the lock lies, by default the user's
  // state folder.
  explicit SingleInstance(std::string program, std::string folder = {})
      : program_(std::move(program)), folder_(std::move(folder)) {}

  // False when another copy runs. Where no lock can be made (a read-only home) the program may run:
  // true.
  bool TryAcquire();

  // Asks the copy that runs to show its window. And whether this copy has been asked since the last
  // call.
  void RequestShow();
  bool TakeShowRequest();

 private:
  std::string FileName(const char* extension) const;

  std::string program_;
  std::string folder_;
  LockFile lock_;
};

}  // namespace zep::platform
