// The button of a job's window that shows what goes over the wires.
#pragma once

#include "services/window_kit_ui.h"

namespace zep::link {

// The button shows the wire transcript beside the job's window. It is hidden where the main window
// does not offer the transcript either.
wxButton* MakeTranscriptButton(wxWindow* parent, const services::WindowContext& context);

}  // namespace zep::link
