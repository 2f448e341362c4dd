#include "platform/single_instance.h"

#include "platform/files.h"
#include "platform/program_paths.h"

namespace zep::platform {

std::string SingleInstance::FileName(const char* extension) const {
  return (folder_.empty() ? UserStateFolder() : folder_) + "/" + program_ + extension;
}

bool SingleInstance::TryAcquire() {
  MakeFolders(folder_.empty() ? UserStateFolder() : folder_);
  return lock_.TryAcquire(FileName(".lock")) != LockState::kHeldByAnother;
}

void SingleInstance::RequestShow() { WriteWholeFile(FileName(".show"), ""); }

bool SingleInstance::TakeShowRequest() {
  const std::string file = FileName(".show");
  return FileExists(file) && !RemoveFile(file);
}

}  // namespace zep::platform
