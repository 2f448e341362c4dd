#include <cerrno>

#include "platform/advice.h"
#include "platform/io_ports.h"

#if defined(__x86_64__) || defined(__i386__)
#include <sys/io.h>

namespace zep::platform {
namespace {

class PcIoPorts final : public IoPorts {
 public:
  void Out(std::uint16_t address, std::uint8_t value) override { outb(value, address); }
};

}  // namespace

std::unique_ptr<IoPorts> OpenIoPorts(std::uint16_t first, std::uint16_t count, SystemError& error) {
  if (ioperm(first, count, 1) == 0) return std::make_unique<PcIoPorts>();
  error = WithAdvice(LastSystemError("I/O ports"), Advice::kIoPortsForbidden);
  return nullptr;
}

}  // namespace zep::platform
#else
namespace zep::platform {

std::unique_ptr<IoPorts> OpenIoPorts(std::uint16_t, std::uint16_t, SystemError& error) {
  error = WithAdvice(MakeSystemError(ENOSYS, "I/O ports"), Advice::kIoPortsForbidden);
  return nullptr;
}

}  // namespace zep::platform
#endif
