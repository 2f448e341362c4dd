#include "platform/utf8_text.h"

#include <utf8proc.h>

namespace zep::platform {

Utf8Character FirstCharacter(std::string_view text) {
  utf8proc_int32_t code = 0;
  const utf8proc_ssize_t bytes =
      utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
                       static_cast<utf8proc_ssize_t>(text.size()), &code);
  if (bytes <= 0) return {.bytes = 1, .columns = 1, .is_valid = false};
  return {.bytes = static_cast<std::size_t>(bytes), .columns = utf8proc_charwidth(code)};
}

}  // namespace zep::platform
