#include "link/transcript_button_ui.h"

#include "services/messages.h"

namespace zep::link {

wxButton* MakeTranscriptButton(wxWindow* parent, const services::WindowContext& context) {
  wxButton* button =
      services::MakeButton(parent, NLSFmt(context.session, "&Wire Transcript..."), "cmdTranscript",
                           [&context] { services::WindowContext::Call(context.show_transcript); });
  button->Show(context.session.factory_mode && context.show_transcript);
  return button;
}

}  // namespace zep::link
