// The engine that writes one image into the flash of every radio on the Active ports, or reads the
// flash of one radio into a file.
//
// The radios move in lockstep: what is sent goes to every Active port in slot order, and every
// radio has acknowledged before the next step. A radio that fails is marked by its port's state and
// left behind; the others go on. The session's TransferMode says which way: kProgram downloads the
// image chosen in firmware.image, kRead uploads into the file of that name.
//
// A terminal calls RunTransfer. A window calls the same steps from its events: LoadTransfer when it
// opens, WriteRadioSW when it has been painted, Cancel from its button, UnloadTransfer when it
// closes. All of it belongs into a link::Job of the user's action.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "firmware/firmware.h"
#include "firmware/transfer_view.h"
#include "platform/clock.h"

namespace zep::firmware {

struct TransferOptions {
  // Every block goes to all ports before any of them is waited for. Nothing: as the setting
  // SendToAllAtOnce says.
  std::optional<bool> at_once;
  // The run is a step of an automatic upgrade, which reports by itself.
  bool automatic_upgrade = false;
};

enum class SlotOutcome {
  kNotUsed,
  kDone,
  kFailed,  // failed on its own, or the run did not end well
};

// "done" or "failed", untranslated; empty for a slot that was not used.
std::string_view OutcomeText(SlotOutcome outcome);

// The transfer of blocks, without bootstraps and waits before and after it.
struct TransferStatistics {
  int blocks = 0;              // on each port
  std::int64_t bytes = 0;      // on each port
  platform::Duration began{};  // on the session's clock
  platform::Duration ended{};
};

struct TransferResult {
  bool succeeded = false;  // DownloadSucceeded: at least one radio is done
  std::array<SlotOutcome, link::kPortCount> outcomes{};
  TransferStatistics statistics;
};

// One run, from the opening of its window to its closing.
struct TransferRun {
  TransferRun(Firmware& program_firmware, TransferView& transfer_view,
              const TransferOptions& transfer_options = {})
      : firmware(program_firmware), view(transfer_view), options(transfer_options) {}

  Firmware& firmware;
  TransferView& view;
  const TransferOptions options;

  bool done = false;  // finished normally
  TransferResult result;

  // What the steps of the run keep for one another.
  bool asking_to_cancel = false;
  std::array<bool, link::kPortCount> used{};  // by slot: Active when the run was loaded
  std::array<link::PortState, link::kPortCount> shown_states{};
  std::string status;         // shown in the status bar, untranslated
  int blocks_counted = 0;     // on the progress bar
  bool upload_begun = false;  // the file of an upload has been opened
};

// Load, run and unload. Cancel may be called in turns of the user interface meanwhile.
TransferResult RunTransfer(TransferRun& run);

// Clears the flags and what was known of the radios, has the user choose one port for an upload,
// and opens the ports. False when they cannot be opened; the window closes then.
bool LoadTransfer(TransferRun& run);

// The whole run: both bootstraps, the transfer, the finishing step. DownloadSucceeded tells how it
// went. Gives up at any step after which the session is stopped.
void WriteRadioSW(TransferRun& run);

// The user's wish to cancel: asks whether the radio may be left as it is, and with any answer but
// No stops the run.
void Cancel(TransferRun& run);

// Closes the ports, having given the line a second to fall silent. Sets DownloadError when the run
// has not finished normally, and fills in the outcomes.
void UnloadTransfer(TransferRun& run);

// "Status: " and the phase, in the status bar.
void UpdateStatusBar(TransferRun& run, std::string_view text);
// The slot's status label from its port's state.
void UpdateStatus(TransferRun& run, int slot);
// Greys out the labels of the slots that are not Active.
void UpdateLabels(TransferRun& run);
// Both for all slots, when a port's state is not the one shown.
void ShowChangedStates(TransferRun& run);

}  // namespace zep::firmware
