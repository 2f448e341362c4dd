// The progress windows of the long jobs, as lines on the standard error.
#pragma once

#include <array>
#include <string>

#include "cli/command_context.h"
#include "firmware/transfer_view.h"
#include "radiodb/read_write_view.h"

namespace zep::cli {

// Reading or programming a radio's data.
class ReadWriteDisplay final : public radiodb::ReadWriteView {
 public:
  explicit ReadWriteDisplay(CommandContext& context) : context_(context) {}
  ~ReadWriteDisplay() override;

  void SetCaption(const std::string& caption) override;
  void ShowStatus(const std::string& status) override;
  void SetProgressMaximum(int maximum) override;
  void SetProgress(int value) override;

 private:
  CommandContext& context_;
};

// Downloading or uploading firmware: what is known of each radio is a line of its own.
class TransferDisplay final : public firmware::TransferView {
 public:
  explicit TransferDisplay(CommandContext& context);
  ~TransferDisplay() override;

  void SetCaption(const std::string& caption) override;
  void ShowStatus(const std::string& status) override;
  void SetProgressMaximum(int maximum) override;
  void SetProgress(int value) override;
  void ShowProgress(bool) override {}
  void EnableCancel(bool enabled) override;
  void ShowCancel(bool) override {}
  void ShowBootstrapHint(bool) override {}
  void SetSlot(int port, const firmware::SlotLabels& labels) override;
  void Repaint() override {}

 private:
  CommandContext& context_;
  std::string status_prefix_;
  std::array<std::string, link::kPortCount> shown_;  // by port
};

}  // namespace zep::cli
