// Files that are not where they are expected: the user may show where they are.
#pragma once

#include <string>
#include <string_view>

#include "services/session.h"

namespace zep::services {

// Finds a file: where it is expected, or where the user shows it in a file dialog with this title,
// which changes folder and name. False when the user gives up. Folders end with their separator.
bool GetFile(Session& session, std::string& folder, std::string& name, const std::string& title);

// The same for a file that is known to be missing; filter is that of the dialog, translated.
bool AskForFile(Session& session, std::string& folder, std::string& name, const std::string& title,
                const std::string& filter);

// What the dialog for a file is called: "Find NAME...".
std::string FindTitle(const Session& session, const std::string& name);

}  // namespace zep::services
