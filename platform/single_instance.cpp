#include "platform/single_instance.h"

#include "platform/files.h"
#include "platform/program_paths.h"

namespace zep::platform {

bool SingleInstance::TryAcquire() {
  const std::string folder = folder_.empty() ? UserStateFolder() : folder_;
  MakeFolders(folder);
  return lock_.TryAcquire(folder + "/" + program_ + ".lock") != LockState::kHeldByAnother;
}

}  // namespace zep::platform
