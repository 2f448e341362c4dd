// The engine that writes one image into the flash of every radio on the Active ports, or reads the
// flash of one radio into a file.
//
// The radios move in lockstep: what is sent goes to every Active port in port order, and every
// radio has acknowledged before the next step. A radio that fails is marked by its port's state and
// left behind; the others go on. kProgram downloads the image chosen in firmware.image, kRead
// uploads into the file of that name.
//
// A terminal calls RunTransfer. A window calls the same steps from its events: LoadTransfer when it
// opens, WriteRadioSW when it has been painted, UnloadTransfer when it closes. Cancel asks first
// meanwhile, and is of no effect once the radios are done.
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

// The transfer of blocks, without bootstraps and waits before and after it.
struct TransferStatistics {
  int blocks = 0;              // on each port
  std::int64_t bytes = 0;      // on each port
  platform::Duration began{};  // on the session's clock
  platform::Duration ended{};
};

struct TransferResult {
  // How the run ended. One radio may have failed while others are done.
  services::Outcome outcome;
  bool succeeded = false;  // DownloadSucceeded: at least one radio is done
  std::array<PortFacts, link::kPortCount> ports{};
  TransferStatistics statistics;

  // Whether the flash loader ran in a radio, so that its firmware may not be what it was.
  bool HasReachedRadio() const;
  // Every radio that took part is done.
  bool AllDone() const;
};

// One run, from the opening of its window to its closing.
struct TransferRun {
  TransferRun(link::Job& the_job, Firmware& program_firmware, TransferView& transfer_view,
              link::Transfer transfer_direction, const TransferOptions& transfer_options = {})
      : job(the_job),
        firmware(program_firmware),
        view(transfer_view),
        direction(transfer_direction),
        options(transfer_options) {}

  link::Job& job;
  Firmware& firmware;
  TransferView& view;
  const link::Transfer direction;
  const TransferOptions options;

  bool done = false;  // finished normally
  TransferResult result;
  // Of the radio identified last: chooses the map for the whole run.
  MicroType micro_type = MicroType::kUnknown;

  // What the steps of the run keep for one another.
  std::optional<link::Job::Step> cancelling;  // how Cancel is taken now
  std::string status;                         // shown in the status bar, untranslated
  int blocks_counted = 0;                     // on the progress bar
  bool upload_begun = false;                  // the file of an upload has been opened

  bool IsUpload() const { return direction == link::Transfer::kRead; }
  PortFacts& Facts(int port) { return result.ports[link::Link::Index(port)]; }
};

// Load, run and unload.
TransferResult RunTransfer(TransferRun& run);

// Clears the flags, has the user choose one port for an upload,
// and opens the ports. False when they cannot be opened; the window closes then.
bool LoadTransfer(TransferRun& run);

// The whole run, in either direction: both bootstraps, the transfer, the finishing step.
// DownloadSucceeded tells how it went. Gives up at any step after which the job is stopped.
void WriteRadioSW(TransferRun& run);

// Closes the ports, having given the line a second to fall silent. Sets DownloadError when the run
// has not finished normally, and fills in the outcomes.
void UnloadTransfer(TransferRun& run);

// "Status: " and the phase, in the status bar.
void UpdateStatusBar(TransferRun& run, std::string_view text);
// Shows the port's state.
void UpdateStatus(TransferRun& run, int port);
// Shows the ports that are not Active, which are greyed out.
void UpdateLabels(TransferRun& run);
// Both for all ports, when a port's state is not the one shown.
void ShowChangedStates(TransferRun& run);

}  // namespace zep::firmware
