// The specification view: who the connected radio is.
#pragma once

#include <string>
#include <vector>

#include <wx/button.h>
#include <wx/stattext.h>

#include "radiodb/identity_text.h"
#include "radiodb/radio_db.h"
#include "services/window_kit_ui.h"

namespace zep::radiodb {

class frmSpecification : public services::TaskWindow {
 public:
  frmSpecification(wxWindow* parent, services::WindowContext& window_context,
                   link::Link& program_link, LastRadio& last_radio);

 private:
  struct Line {
    wxStaticText* name = nullptr;
    wxStaticText* value = nullptr;
  };

  // Shows the radio read last; dashes when there is none.
  void FillInTheData();
  // The identity was read to its end.
  bool IsRead() const { return !radio_.identity.serial_number.empty(); }
  void ReadTheRadio();
  void Copy();
  void ShowStatus(std::string_view text);

  link::Link& link_;
  LastRadio& radio_;
  std::vector<Line> lines_;  // one for each field that a radio may have
  wxFlexGridSizer* grid_ = nullptr;
  wxStaticText* lblStatus = nullptr;
  wxButton* cmdReadRadio = nullptr;
  wxButton* cmdCopy = nullptr;
  wxButton* cmdCancel = nullptr;
};

}  // namespace zep::radiodb
