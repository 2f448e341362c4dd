#include "shell/window_user.h"

#include <wx/app.h>
#include <wx/filedlg.h>
#include <wx/msgdlg.h>

#include "services/messages.h"
#include "services/window_kit_ui.h"

namespace zep::shell {
namespace {

using services::Answer;
using services::Buttons;
using services::Icon;
using services::NLSFmt;
using services::ToWx;

// A turn of the windows costs more than a byte on the line; this often is at once for a person.
constexpr std::chrono::milliseconds kBetweenTurns(5);

long StyleOf(const services::MessageRequest& request) {
  long style = wxCENTRE;
  switch (request.buttons) {
    case Buttons::kOk:
      style |= wxOK;
      break;
    case Buttons::kOkCancel:
      style |= wxOK | wxCANCEL | (request.cautious ? wxCANCEL_DEFAULT : 0);
      break;
    case Buttons::kYesNo:
      style |= wxYES_NO | (request.cautious ? wxNO_DEFAULT : 0);
      break;
  }
  switch (request.icon) {
    case Icon::kInformation:
      return style | wxICON_INFORMATION;
    case Icon::kCritical:
      return style | wxICON_ERROR;
    case Icon::kQuestion:
      return style | wxICON_QUESTION;
  }
  return style;
}

Answer AnswerOf(int button, Buttons buttons) {
  switch (button) {
    case wxID_YES:
      return Answer::kYes;
    case wxID_OK:
      return Answer::kOk;
    default:
      break;
  }
  // Closing the box by its corner.
  if (buttons == Buttons::kOk) return Answer::kOk;
  return buttons == Buttons::kYesNo ? Answer::kNo : Answer::kCancel;
}

}  // namespace

void WindowUser::PumpEvents() {
  const auto now = std::chrono::steady_clock::now();
  if (now - last_turn_ < kBetweenTurns) return;
  wxTheApp->Yield();
  last_turn_ = std::chrono::steady_clock::now();
}

Answer WindowUser::ShowMessage(const services::MessageRequest& request) {
  wxMessageDialog box(services::DialogParent(), ToWx(services::PadMessage(request.text)),
                      ToWx(request.title), StyleOf(request));
  const wxString ok = ToWx(NLSFmt(*session_, "&OK"));
  const wxString cancel = ToWx(NLSFmt(*session_, "&Cancel"));
  switch (request.buttons) {
    case Buttons::kOk:
      box.SetOKLabel(ok);
      break;
    case Buttons::kOkCancel:
      box.SetOKCancelLabels(ok, cancel);
      break;
    case Buttons::kYesNo:
      box.SetYesNoLabels(ToWx(NLSFmt(*session_, "&Yes")), ToWx(NLSFmt(*session_, "&No")));
      break;
  }
  return AnswerOf(box.ShowModal(), request.buttons);
}

std::optional<std::string> WindowUser::AskFile(const services::FileRequest& request, long style) {
  // "*.*" means every file here, also one without a dot.
  wxString filter = ToWx(request.filter);
  filter.Replace("*.*", wxFileSelectorDefaultWildcardStr);
  wxFileDialog dialog(services::DialogParent(), ToWx(request.title), ToWx(request.folder),
                      ToWx(request.name), filter, style);
  if (dialog.ShowModal() != wxID_OK) return std::nullopt;
  return services::FromWx(dialog.GetPath());
}

std::optional<std::string> WindowUser::AskOpenFile(const services::FileRequest& request) {
  return AskFile(request, wxFD_OPEN);
}

// Whether a file may be replaced is asked by whoever writes it.
std::optional<std::string> WindowUser::AskSaveFile(const services::FileRequest& request) {
  return AskFile(request, wxFD_SAVE);
}

}  // namespace zep::shell
