// How far a job is: what is being done, a bar, and rate and time left.
#pragma once

#include <string>

#include <wx/gauge.h>
#include <wx/panel.h>
#include <wx/stattext.h>

#include "services/progress_rate.h"
#include "services/window_kit_ui.h"

namespace zep::services {

class ProgressPanel : public wxPanel {
 public:
  ProgressPanel(wxWindow* parent, const WindowContext& window_context);

  // What is being done; the same text again costs nothing.
  void ShowText(const std::string& text);
  // The value runs from 0 to the maximum.
  void SetMaximum(int maximum);
  void SetValue(int value);
  void ShowBar(bool shown);

 private:
  void Draw();

  const WindowContext& context_;
  ProgressRate rate_;
  platform::Duration drawn_{};  // when the bar was drawn last

  wxStaticText* lblProgressText = nullptr;
  wxGauge* prgProgress = nullptr;
  wxStaticText* lblProgressRate = nullptr;
};

}  // namespace zep::services
