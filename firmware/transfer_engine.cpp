#include "firmware/transfer_engine.h"

#include <algorithm>

#include "firmware/bootstraps.h"
#include "firmware/image_transfer.h"
#include "firmware/transfer_report.h"
#include "link/byte_exchange.h"
#include "link/programming_mode.h"
#include "services/messages.h"
#include "services/waits.h"

namespace zep::firmware {
namespace {

using link::Job;
using link::kAllPorts;
using services::Failure;
using services::Icon;
using services::NLSFmt;
using services::NLSMsgBox;
using services::NLSText;
using services::Session;

void NoteUsedPorts(TransferRun& run) {
  for (const int port : kAllPorts) {
    if (run.job.IsActive(port)) run.Facts(port).takes_part = true;
  }
}

// False, after a word to the user, when an upload would have to read several radios.
bool IsOneRadio(Job& job) {
  if (ActivePorts(job.CommStates) <= 1) return true;
  NLSMsgBox(job.session,
            "Only one radio at a time can be read, but several ports are Active. Please choose one "
            "port.",
            {.icon = Icon::kCritical});
  job.SetDownloadError(Failure::kRefused);
  return false;
}

// An upload reads one radio, whose contents have nothing to do with any image looked at before.
// False when the user could not be brought to choose one port.
bool PrepareUpload(TransferRun& run) {
  Job& job = run.job;
  ChosenImage& image = run.firmware.image;
  image = {.BinaryFilePath = image.BinaryFilePath,
           .BinaryFileName = image.BinaryFileName,
           .FirmwareRadioType = {},
           .contents = {}};
  TryPorts(job.link, job.CommStates);
  if (ActivePorts(job.CommStates) > 1) job.link.windows.ShowPortSelection(job);
  return !job.CancelRequested && IsOneRadio(job);
}

// The finishing step: lets the radios start their new firmware.
void Finish(TransferRun& run) {
  constexpr std::uint8_t kEndOfLoader = 0xFF;
  Job& job = run.job;
  // All of the firmware is in the radios: from here on there is nothing to be cancelled.
  run.cancelling.emplace(job, link::Cancelling::kTooLate);
  SendByteToActiveComms(job, kEndOfLoader);
  services::WaitSeconds(job.session, 0.5);
  SendCaretToActiveComms(job);
  DrainOutput(job);
  if (job.Stopped()) return;
  job.DownloadSucceeded = true;
  run.done = true;
  for (const int port : kAllPorts) {
    if (!job.IsActive(port)) continue;
    run.Facts(port).outcome = RadioOutcome::kDone;
    run.view.SetPort(port, run.Facts(port));
  }
  if (!run.options.automatic_upgrade) TransferReport(run);
}

void FillInResult(TransferRun& run) {
  Job& job = run.job;
  run.result.succeeded = job.DownloadSucceeded;
  for (const int port : kAllPorts) {
    PortFacts& facts = run.Facts(port);
    if (!facts.takes_part || facts.outcome == RadioOutcome::kDone) continue;
    facts.outcome = RadioOutcome::kFailed;
    // A port that could not be opened was left out, and the others went on.
    job.KeepCause(Failure::kPort);
  }
  run.result.outcome = job.Ended(run.done);
}

}  // namespace

std::string_view OutcomeText(RadioOutcome outcome) {
  switch (outcome) {
    case RadioOutcome::kNone:
      return {};
    case RadioOutcome::kDone:
      return NLSText("done");
    case RadioOutcome::kFailed:
      break;
  }
  return NLSText("failed");
}

bool TransferResult::HasReachedRadio() const {
  return std::ranges::any_of(
      ports, [](const PortFacts& radio) { return radio.micro != MicroType::kUnknown; });
}

bool TransferResult::AllDone() const {
  return succeeded && std::ranges::none_of(ports, [](const PortFacts& radio) {
           return radio.outcome == RadioOutcome::kFailed;
         });
}

TransferResult RunTransfer(TransferRun& run) {
  if (LoadTransfer(run)) WriteRadioSW(run);
  UnloadTransfer(run);
  return run.result;
}

bool LoadTransfer(TransferRun& run) {
  Job& job = run.job;
  const Session& session = job.session;
  job.ClearFlags();
  job.DownloadSucceeded = false;
  job.TransferMode = run.direction;
  if (run.IsUpload() && !PrepareUpload(run)) return false;

  run.view.ShowProgress(session.fast_processor);
  run.view.ShowCancel(false);
  run.view.ShowBootstrapHint(false);
  NoteUsedPorts(run);
  if (!InitialiseComms(job)) return false;
  // The user may have been asked for ports only now.
  if (run.IsUpload() && !IsOneRadio(job)) return false;
  NoteUsedPorts(run);
  run.view.SetCaption(run.IsUpload() ? NLSFmt(session, "Uploading Radio Firmware")
                                     : NLSFmt(session, "Downloading Radio Firmware"));
  run.cancelling.emplace(job, link::Cancelling::kAsksFirst);
  return true;
}

void WriteRadioSW(TransferRun& run) {
  Job& job = run.job;
  job.DownloadSucceeded = false;
  SelectInputMode(job.link, job.CommStates, platform::InputMode::kBinary);
  job.others_go_on = ActivePorts(job.CommStates) > 1;
  for (const int port : kAllPorts) UpdateStatus(run, port);
  UpdateLabels(run);
  ClearInputBuffers(job.link);
  if (job.Stopped()) return;

  RunBootstrap1(run);
  if (job.Stopped()) return;
  RunBootstrap2(run);
  if (job.Stopped()) return;
  WriteRadioSoftware(run);
  if (job.Stopped()) return;
  Finish(run);
}

void UnloadTransfer(TransferRun& run) {
  Job& job = run.job;
  UpdateStatusBar(run, NLSText("Closing communication ports..."));
  if (!run.done) {
    job.SetDownloadError(Failure::kCancelled);
    DiscardUpload(run);
  }
  ShowChangedStates(run);
  FillInResult(run);

  job.others_go_on = false;
  services::WaitSecondsYielding(job.session, 1);
  SelectInputMode(job.link, job.CommStates, platform::InputMode::kText);
  CloseAllComms(job.link);
  run.cancelling.reset();
}

void UpdateStatusBar(TransferRun& run, std::string_view text) {
  if (text == run.status) return;
  run.status = text;
  const Session& session = run.job.session;
  run.view.ShowStatus(NLSFmt(session, "Status: ") + NLSFmt(session, text));
}

void UpdateStatus(TransferRun& run, int port) {
  PortFacts& facts = run.Facts(port);
  facts.state = run.job.State(port);
  run.view.SetPort(port, facts);
}

void UpdateLabels(TransferRun& run) {
  for (const int port : kAllPorts) {
    if (run.job.IsActive(port)) continue;
    run.Facts(port).left_out = true;
    run.view.SetPort(port, run.Facts(port));
  }
}

void ShowChangedStates(TransferRun& run) {
  const bool changed = std::ranges::any_of(
      kAllPorts, [&run](int port) { return run.Facts(port).state != run.job.State(port); });
  if (!changed) return;
  for (const int port : kAllPorts) UpdateStatus(run, port);
  UpdateLabels(run);
}

}  // namespace zep::firmware
