#include <cerrno>
#include <system_error>

#include "platform/system_error.h"

namespace zep::platform {

SystemError MakeSystemError(int number, std::string subject) {
  SystemError error;
  error.number = number;
  error.description = std::generic_category().message(number);
  error.subject = std::move(subject);
  return error;
}

SystemError LastSystemError(std::string subject) {
  return MakeSystemError(errno, std::move(subject));
}

}  // namespace zep::platform
