#include "shell/toolkit.h"

#include <wx/utils.h>

namespace zep::shell {

void PrepareToolkit() {
#ifdef __WXGTK__
  if (!wxGetEnv("GDK_GL", nullptr)) wxSetEnv("GDK_GL", "disable");
#endif
}

}  // namespace zep::shell
