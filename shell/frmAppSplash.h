// The start-up picture with the program's title and version.
#pragma once

#include <wx/bitmap.h>
#include <wx/frame.h>

#include "shell/application.h"

namespace zep::shell {

class frmAppSplash : public wxFrame {
 public:
  explicit frmAppSplash(const Application& application);

 private:
  void OnPaint(wxPaintEvent& event);
  // Draws the text from there on, in lines of at most this width. Returns where it ends.
  int DrawInLines(wxDC& dc, const wxString& text, wxPoint from, int width) const;

  wxBitmap picture_;
  wxString title_;
  wxString version_;
};

// Shows the start-up picture for two seconds.
void AppShowSplash(Application& application);

}  // namespace zep::shell
