#include "platform/system_error.h"

#include <utility>

namespace zep::platform {

SystemError MakeSystemError(const std::error_code& code, std::string subject) {
  if (!code) return {};
  if (code.category() == std::system_category()) {
    return MakeSystemError(code.value(), std::move(subject));
  }
  SystemError error;
  error.number = code.value();
  error.description = code.message();
  error.subject = std::move(subject);
  return error;
}

}  // namespace zep::platform
