#include <windows.h>

#include "platform/advice.h"
#include "platform/io_ports.h"

// Windows needs a driver of its own for this.
namespace zep::platform {

std::unique_ptr<IoPorts> OpenIoPorts(std::uint16_t, std::uint16_t, SystemError& error) {
  error = WithAdvice(MakeSystemError(ERROR_NOT_SUPPORTED, "I/O ports"), Advice::kIoPortsForbidden);
  return nullptr;
}

}  // namespace zep::platform
