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

using link::kAllPorts;
using link::Link;
using services::Failure;
using services::Icon;
using services::NLSFmt;
using services::NLSMsgBox;
using services::NLSText;
using services::Session;
using services::Transfer;

bool IsUpload(const TransferRun& run) {
  return run.firmware.link.session.TransferMode == Transfer::kRead;
}

std::ptrdiff_t ActivePorts(const Link& link) {
  return std::count(link.CommStates.begin(), link.CommStates.end(), link::PortState::kActive);
}

void NoteUsedPorts(TransferRun& run) {
  for (const int slot : kAllPorts) {
    if (run.firmware.link.IsActive(slot)) run.used[Link::Index(slot)] = true;
  }
}

// False, after a word to the user, when an upload would have to read several radios.
bool IsOneRadio(Link& link) {
  if (ActivePorts(link) <= 1) return true;
  NLSMsgBox(link.session,
            "Only one radio at a time can be read, but several ports are Active. Please choose one "
            "port.",
            {.icon = Icon::kCritical});
  link.session.SetDownloadError(Failure::kRefused);
  return false;
}

// An upload reads one radio, whose contents have nothing to do with any image looked at before.
// False when the user could not be brought to choose one port.
bool PrepareUpload(TransferRun& run) {
  Link& link = run.firmware.link;
  ImageFile& image = run.firmware.image;
  image.FirmwareRadioModel = image.FirmwareMicroType = image.FirmwareFlashSize = 0;
  image.FirmwareRadioType.clear();
  if (CountActivePorts(link) > 1) link.windows.ShowPortSelection(link);
  return !link.session.CancelRequested && IsOneRadio(link);
}

// The finishing step: lets the radios start their new firmware.
void Finish(TransferRun& run) {
  constexpr std::uint8_t kEndOfLoader = 0xFF;
  Link& link = run.firmware.link;
  SendByteToActiveComms(link, kEndOfLoader);
  services::WaitSeconds(link.session, 0.5);
  SendCaretToActiveComms(link);
  DrainOutput(link);
  if (link.session.Stopped()) return;
  link.session.DownloadSucceeded = true;
  for (const int slot : kAllPorts) {
    if (!link.IsActive(slot)) continue;
    run.firmware.Labels(slot).outcome = NLSFmt(link.session, OutcomeText(SlotOutcome::kDone));
    run.view.SetSlot(slot, run.firmware.Labels(slot));
  }
  if (!run.options.automatic_upgrade) TransferReport(link, run.view);
  run.done = true;
}

void FillInResult(TransferRun& run) {
  const Link& link = run.firmware.link;
  Session& session = link.session;
  run.result.succeeded = session.DownloadSucceeded;
  for (const int slot : kAllPorts) {
    const bool done = run.done && link.IsActive(slot);
    if (!run.used[Link::Index(slot)]) continue;
    run.result.outcomes[Link::Index(slot)] = done ? SlotOutcome::kDone : SlotOutcome::kFailed;
    // A port that could not be opened was left out, and the others went on.
    if (!done) session.KeepCause(Failure::kPort);
  }
}

}  // namespace

std::string_view OutcomeText(SlotOutcome outcome) {
  switch (outcome) {
    case SlotOutcome::kNotUsed:
      return {};
    case SlotOutcome::kDone:
      return NLSText("done");
    case SlotOutcome::kFailed:
      break;
  }
  return NLSText("failed");
}

TransferResult RunTransfer(TransferRun& run) {
  if (LoadTransfer(run)) WriteRadioSW(run);
  UnloadTransfer(run);
  return run.result;
}

bool LoadTransfer(TransferRun& run) {
  Link& link = run.firmware.link;
  Session& session = link.session;
  session.ClearFlags();
  session.DownloadSucceeded = false;
  run.firmware.flash_devices = {};
  run.firmware.labels = {};
  run.firmware.micro_type.clear();
  if (IsUpload(run) && !PrepareUpload(run)) return false;

  run.view.ShowProgress(session.fast_processor);
  run.view.ShowCancel(false);
  run.view.ShowBootstrapHint(false);
  NoteUsedPorts(run);
  if (!InitialiseComms(link)) return false;
  // The user may have been asked for ports only now.
  if (IsUpload(run) && !IsOneRadio(link)) return false;
  NoteUsedPorts(run);
  run.view.SetCaption(IsUpload(run) ? NLSFmt(session, "Uploading Radio Firmware")
                                    : NLSFmt(session, "Downloading Radio Firmware"));
  return true;
}

void WriteRadioSW(TransferRun& run) {
  Link& link = run.firmware.link;
  link.session.DownloadSucceeded = false;
  SelectInputMode(link, platform::InputMode::kBinary);
  link.others_go_on = ActivePorts(link) > 1;
  for (const int slot : kAllPorts) UpdateStatus(run, slot);
  UpdateLabels(run);
  ClearInputBuffers(link);
  if (link.session.Stopped()) return;

  RunBootstrap1(run);
  if (link.session.Stopped()) return;
  RunBootstrap2(run);
  if (link.session.Stopped()) return;
  WriteRadioSoftware(run);
  if (link.session.Stopped()) return;
  Finish(run);
}

void Cancel(TransferRun& run) {
  Session& session = run.firmware.link.session;
  if (run.done || run.asking_to_cancel || session.Stopped()) return;
  run.asking_to_cancel = true;
  const bool stops = AskToCancel(session);
  run.asking_to_cancel = false;
  if (stops) session.RequestCancel();
}

void UnloadTransfer(TransferRun& run) {
  Link& link = run.firmware.link;
  Session& session = link.session;
  UpdateStatusBar(run, services::NLSText("Closing communication ports..."));
  if (!run.done) {
    session.SetDownloadError(Failure::kCancelled);
    DiscardUpload(run);
  }
  ShowChangedStates(run);
  FillInResult(run);

  link.others_go_on = false;
  services::WaitSecondsYielding(session, 1);
  SelectInputMode(link, platform::InputMode::kText);
  CloseAllComms(link);
}

void UpdateStatusBar(TransferRun& run, std::string_view text) {
  if (text == run.status) return;
  run.status = text;
  const Session& session = run.firmware.link.session;
  run.view.ShowStatus(NLSFmt(session, "Status: ") + NLSFmt(session, text));
}

void UpdateStatus(TransferRun& run, int slot) {
  const Link& link = run.firmware.link;
  const link::PortState state = link.CommStates[Link::Index(slot)];
  run.shown_states[Link::Index(slot)] = state;
  SlotLabels& labels = run.firmware.Labels(slot);
  labels.status = NLSFmt(link.session, PortStateText(state));
  run.view.SetSlot(slot, labels);
}

void UpdateLabels(TransferRun& run) {
  for (const int slot : kAllPorts) {
    if (run.firmware.link.IsActive(slot)) continue;
    SlotLabels& labels = run.firmware.Labels(slot);
    labels.enabled = false;
    run.view.SetSlot(slot, labels);
  }
}

void ShowChangedStates(TransferRun& run) {
  const Link& link = run.firmware.link;
  if (run.shown_states == link.CommStates) return;
  for (const int slot : kAllPorts) UpdateStatus(run, slot);
  UpdateLabels(run);
}

}  // namespace zep::firmware
