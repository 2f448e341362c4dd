#include "shell/frmAppSplash.h"

#include <wx/dcbuffer.h>
#include <wx/tokenzr.h>

#include "services/messages.h"
#include "services/resource_ids.h"
#include "services/waits.h"
#include "shell/icons.h"

namespace zep::shell {
namespace {

using services::NLSFmt;
using services::ToWx;

constexpr double kSecondsShown = 2;

// The picture's size, and the place in it that is free for the texts; 70 high.
constexpr int kWidth = 480;
constexpr int kHeight = 270;
constexpr int kTextLeft = 24;
constexpr int kTextTop = 180;
constexpr int kTextWidth = 276;

}  // namespace

frmAppSplash::frmAppSplash(const Application& application)
    : wxFrame(nullptr, wxID_ANY, "", wxDefaultPosition, wxDefaultSize,
              wxBORDER_NONE | wxSTAY_ON_TOP | wxFRAME_NO_TASKBAR, "frmAppSplash") {
  const services::Session& session = application.session;
  title_ = ToWx(NLSFmt(session, session.strings.Get(services::kResApplicationTitle)));
  version_ = ToWx(session.strings.Get(services::kResVersion));
  SetTitle(title_);
  SetIcons(ApplicationIcons(session.paths));
  const wxSize size = FromDIP(wxSize(kWidth, kHeight));
  wxImage picture = LoadPicture(session.paths, "splash.png");
  if (picture.IsOk()) {
    if (picture.GetSize() != size) picture.Rescale(size.x, size.y, wxIMAGE_QUALITY_HIGH);
    picture_ = wxBitmap(picture);
  }
  SetBackgroundStyle(wxBG_STYLE_PAINT);
  SetBackgroundColour(wxColour(30, 45, 70));
  SetClientSize(size);
  CentreOnScreen();
  Bind(wxEVT_PAINT, &frmAppSplash::OnPaint, this);
  // It goes when its time is over, not before.
  Bind(wxEVT_CLOSE_WINDOW, [](wxCloseEvent& event) { event.Veto(); });
}

void frmAppSplash::OnPaint(wxPaintEvent& /*event*/) {
  wxAutoBufferedPaintDC dc(this);
  dc.SetBackground(wxBrush(GetBackgroundColour()));
  dc.Clear();
  if (picture_.IsOk()) dc.DrawBitmap(picture_, 0, 0);
  dc.SetTextForeground(*wxWHITE);
  const wxPoint place = FromDIP(wxPoint(kTextLeft, kTextTop));
  dc.SetFont(GetFont().Bold().Larger());
  const int below = DrawInLines(dc, title_, place, FromDIP(kTextWidth));
  dc.SetFont(GetFont());
  dc.DrawText(version_, place.x, below + services::Gap(this) / 2);
}

int frmAppSplash::DrawInLines(wxDC& dc, const wxString& text, wxPoint from, int width) const {
  wxString line;
  const auto draw = [&] {
    dc.DrawText(line, from);
    from.y += dc.GetCharHeight();
  };
  for (wxStringTokenizer words(text, " "); words.HasMoreTokens();) {
    const wxString word = words.GetNextToken();
    const wxString longer = line.empty() ? word : line + " " + word;
    if (!line.empty() && dc.GetTextExtent(longer).x > width) {
      draw();
      line = word;
    } else {
      line = longer;
    }
  }
  draw();
  return from.y;
}

void AppShowSplash(Application& application) {
  frmAppSplash splash(application);
  splash.Show();
  WaitSecondsYielding(application.session, kSecondsShown);
}

}  // namespace zep::shell
