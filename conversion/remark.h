// What a conversion has found in the data, for whoever has it done to log and to show.
#pragma once

#include "services/text.h"

namespace zep::conversion {

struct Remark {
  services::Text text;
  bool needs_box = false;  // data is left out: the user is told in a box
};

}  // namespace zep::conversion
