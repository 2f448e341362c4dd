// The program's pictures: its icon and the start-up picture.
#pragma once

#include <string>

#include <wx/iconbndl.h>
#include <wx/image.h>

#include "services/paths.h"

namespace zep::shell {

// The picture "images/NAME"; an invalid one when it is missing or damaged.
wxImage LoadPicture(const services::ApplicationPaths& paths, const std::string& name);

// The icon in all its sizes, as far as they are there.
wxIconBundle ApplicationIcons(const services::ApplicationPaths& paths);

}  // namespace zep::shell
