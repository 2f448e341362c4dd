// Runs the tests of the windows with the toolkit up.
#include <gtest/gtest.h>
#include <wx/app.h>
#include <wx/image.h>
#include <wx/init.h>

#include "shell/toolkit.h"

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  zep::shell::PrepareToolkit();
  wxApp::SetInstance(new wxApp);
  if (!wxEntryStart(argc, argv)) return 1;
  wxTheApp->CallOnInit();
  wxTheApp->SetExitOnFrameDelete(false);
  wxImage::AddHandler(new wxPNGHandler);
  const int result = RUN_ALL_TESTS();
  wxEntryCleanup();
  return result;
}
