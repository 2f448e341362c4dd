// Views that show nothing, for tests that look at what a procedure does and not at how it is
// watched.
#pragma once

#include <string>

#include "firmware/transfer_view.h"
#include "radiodb/read_write_view.h"

namespace zep::testing {

class QuietView : public firmware::TransferView, public radiodb::ReadWriteView {
 public:
  void SetCaption(const std::string&) override {}
  void ShowStatus(const std::string&) override {}
  void SetProgressMaximum(int) override {}
  void SetProgress(int) override {}
  void ShowProgress(bool) override {}
  void EnableCancel(bool) override {}
  void ShowCancel(bool) override {}
  void ShowBootstrapHint(bool) override {}
  void SetPort(int, const firmware::PortFacts&) override {}
  void Repaint() override {}
};

}  // namespace zep::testing
