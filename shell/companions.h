// What lies outside this program: the suite's other applications and the maker's web pages.
#pragma once

#include <string_view>

#include "shell/application.h"

namespace zep::shell {

// Starts another application of the suite, which then runs by itself. When it is not where it
// should be, the user may show where it is, and that place is kept. Without it nothing is started.
void LaunchApplication(Application& application, services::AppType type);

// Opens the web address that a shared setting holds, or the string table's, in the user's browser.
// Says nothing when that fails.
void OpenWebPage(Application& application, std::string_view setting, int default_resource);

}  // namespace zep::shell
