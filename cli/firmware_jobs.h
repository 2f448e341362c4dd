// The windows that a firmware download or upload opens one after the other, at a terminal.
#pragma once

#include "cli/command_context.h"
#include "firmware/download.h"
#include "firmware/transfer_engine.h"

namespace zep::cli {

class FirmwareWindows final : public firmware::DownloadWindows {
 public:
  FirmwareWindows(CommandContext& context, const firmware::TransferOptions& options)
      : context_(context), options_(options) {}

  services::Outcome ReadRadioData(radiodb::RadioDb& db) override;
  services::Outcome ProgramRadioData(radiodb::RadioDb& db, const std::string& file) override;
  firmware::TransferResult TransferFirmware(link::Job& job, firmware::Firmware& firmware,
                                            link::Transfer direction) override;

  // Whether a data file has been programmed.
  bool HasProgrammed() const { return has_programmed_; }

  // The radios with what became of them; empty when no transfer was begun.
  void Report(const link::Link& link);

 private:
  CommandContext& context_;
  firmware::TransferOptions options_;
  firmware::TransferResult result_;
  bool has_programmed_ = false;
};

}  // namespace zep::cli
