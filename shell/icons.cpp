#include "shell/icons.h"

#include <array>

#include <wx/icon.h>
#include <wx/log.h>

#include "platform/files.h"
#include "services/window_kit_ui.h"

namespace zep::shell {

wxImage LoadPicture(const services::ApplicationPaths& paths, const std::string& name) {
  if (wxImage::FindHandler(wxBITMAP_TYPE_PNG) == nullptr) wxImage::AddHandler(new wxPNGHandler);
  const std::string file = FindApplicationFile(paths, "images/" + name);
  wxImage picture;
  if (!platform::FileExists(file)) return picture;
  // A program without its picture works as well; there is nothing to tell the user.
  const wxLogNull silent;
  picture.LoadFile(services::ToWx(file), wxBITMAP_TYPE_PNG);
  return picture;
}

wxIconBundle ApplicationIcons(const services::ApplicationPaths& paths) {
  constexpr std::array kSizes = {16, 24, 32, 48, 64, 128, 256};
  wxIconBundle icons;
  for (const int size : kSizes) {
    const wxImage picture = LoadPicture(paths, "zepdlca-" + std::to_string(size) + ".png");
    if (!picture.IsOk()) continue;
    wxIcon icon;
    icon.CopyFromBitmap(wxBitmap(picture));
    icons.AddIcon(icon);
  }
  return icons;
}

}  // namespace zep::shell
