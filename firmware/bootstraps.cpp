#include "firmware/bootstraps.h"

#include <algorithm>
#include <string>

#include "link/byte_exchange.h"
#include "link/programming_mode.h"
#include "platform/files.h"
#include "platform/thread_priority.h"
#include "radiodb/radio_models.h"
#include "services/messages.h"
#include "services/paths.h"
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
using services::ReportError;
using services::Session;

// Models of this tier listen to the first loader only while their On button is held.
constexpr std::int32_t kModelHeldOn = 3;
// The downloader must fit into the radio's RAM.
constexpr std::size_t kLongestDownloader = 2000;

constexpr std::size_t kBootstrapSize = 256;
constexpr std::string_view kBootstrapStart = "\xFF";

void SendBootstrapToPort(Link& link, TransferView& view, int port, const std::string& loader) {
  Session& session = link.session;
  view.SetProgressMaximum(static_cast<int>(kBootstrapSize));
  view.ShowStatus(NLSFmt(session, "Writing bootstrap file 1 to communication port %0:s",
                         {std::to_string(port)}));
  SendStringToSpecificComms(link, kBootstrapStart, port);
  int sent = 0;
  for (const char byte : loader) {
    SendByteToSpecificComms(link, static_cast<std::uint8_t>(byte), port);
    ShortenOutput(link, port, link::kBytesAhead);
    // A slow processor leaves the bar alone, so that the line is kept fed.
    if (session.fast_processor) view.SetProgress(++sent);
    if (session.DownloadError || !link.IsActive(port)) return;
  }
}

// For want of a loader file. To install the application anew does not help everyone.
void StopForFile(Session& session, std::string_view text) {
  std::string box = NLSFmt(session, text) + "\n";
  box += NLSFmt(session,
                "The files bs.tsk and dl.tsk come with the radio's firmware. Please put them into "
                "the folder %0:s.",
                {session.paths.application_folder});
  NLSMsgBox(session, box, {.icon = Icon::kCritical});
  session.RequestCancel(Failure::kFile);
}

void AskForBootstrapMode(TransferRun& run) {
  const Session& session = run.firmware.link.session;
  std::string text = NLSFmt(session, "Please put radio in Bootstrap mode.");
  if (run.firmware.image.FirmwareRadioModel == kModelHeldOn) {
    text += "\n\n" + NLSFmt(session,
                            "NOTE: For %0:s radios the On button must be pressed until bootstrap1 "
                            "file is loaded",
                            {radiodb::AppGetRadioModel(session, kModelHeldOn)});
  }
  NLSMsgBox(run.firmware.link.session, text, {.notice = services::Notice::kAwaitsAction});
}

// False when the run must not go on without the priority. Only Windows grants it to everybody;
// elsewhere the loader is sent at normal priority.
bool SetPriority(Session& session, bool time_critical) {
  const platform::SystemError error = platform::SetThreadTimeCritical(time_critical);
  if (!error) return true;
#ifdef _WIN32
  ReportError(session, error, "WriteRadioSW");
  session.RequestCancel(Failure::kRefused);
  return false;
#else
  session.log.Error("The first loader is sent at normal priority: " + error.description);
  return true;
#endif
}

void SendBytes(TransferRun& run, const std::string& downloader) {
  Link& link = run.firmware.link;
  int sent = 0;
  for (const char byte : downloader) {
    SendByteToAllComms(link, static_cast<std::uint8_t>(byte));
    ShortenOutput(link, link::kBytesAhead);
    link.session.PumpEvents();
    if (link.session.Stopped()) return;
    run.view.SetProgress(++sent);
  }
}

void SwitchToDownloadSpeed(Link& link) {
  const bool high_speed = link.session.high_speed;
  SendByteToAllComms(link, high_speed ? 0x00 : '0');
  services::WaitSeconds(link.session, 0.5);
  SelectBaudRate(link, high_speed ? 125000 : 9600);
}

// Loads the downloader into every radio's RAM and starts it.
void LoadDownloader(TransferRun& run, const std::string& file_name) {
  Link& link = run.firmware.link;
  Session& session = link.session;
  SwitchToDownloadSpeed(link);
  SendByteToAllComms(link, 'B');
  const platform::FileContents downloader = platform::ReadWholeFile(file_name);
  if (downloader.error) {
    ReportError(session, downloader.error, "WriteRadioSW");
    return session.RequestCancel(Failure::kFile);
  }
  if (downloader.bytes.empty() || downloader.bytes.size() > kLongestDownloader) {
    return StopForFile(session,
                       NLSText("The file dl.tsk is corrupt. Please reinstall this application."));
  }
  run.view.SetProgressMaximum(static_cast<int>(downloader.bytes.size()));
  UpdateStatusBar(run, NLSText("Writing bootstrap file 2"));
  ClearInputBuffers(link);
  SendBytes(run, downloader.bytes);
  if (session.Stopped()) return;
  SendByteToAllComms(link, 'E');
  DrainOutput(link);
  services::WaitSecondsYielding(session, 1);
}

void IdentifyRadios(TransferRun& run) {
  Session& session = run.firmware.link.session;
  for (const int slot : kAllPorts) {
    UpdateStatus(run, slot);
    UpdateFlashMicro(run.firmware, run.view, slot);
  }
  // No radio has told which map is its own; the user knows why already.
  if (!session.Stopped() && run.firmware.micro_type.empty())
    session.SetDownloadError(Failure::kRefused);
}

void CheckRadios(TransferRun& run) {
  Session& session = run.firmware.link.session;
  run.view.Repaint();
  ShowChangedStates(run);
  VerifyFlashFile(run.firmware);
  if (session.DownloadError) return;
  const auto any = [&](std::string_view micro) {
    return std::any_of(run.firmware.labels.begin(), run.firmware.labels.end(),
                       [micro](const SlotLabels& labels) { return labels.micro == micro; });
  };
  if (!any("A1") || !any("E1")) return;
  NLSMsgBox(session, "You cannot program an E1 and an A1 radio at the same time",
            {.icon = Icon::kCritical});
  session.SetDownloadError(Failure::kRefused);
}

void SendMode(Link& link) {
  const bool download = link.session.TransferMode == services::Transfer::kProgram;
  for (const char byte : {download ? 'r' : 't', '0'}) {
    const auto command = static_cast<std::uint8_t>(byte);
    SendByteToAllComms(link, command, {.wait = true, .expected = command});
  }
}

}  // namespace

void SendBootStrap1ToAllComms(Link& link, TransferView& view) {
  Session& session = link.session;
  const platform::FileContents loader =
      platform::ReadWholeFile(services::FindApplicationFile(session.paths, "bs.tsk"));
  if (loader.error) {
    ReportError(session, loader.error, "SendBootStrap1ToAllComms");
    session.RequestCancel(Failure::kFile);
    return;
  }
  if (loader.bytes.size() != kBootstrapSize) {
    NLSMsgBox(session, "Invalid bootstrap file (bs.tsk)");
    session.RequestCancel(Failure::kFile);
    CheckForNoResponse(link);
    return;
  }
  for (const int port : kAllPorts) {
    if (link.IsActive(port)) SendBootstrapToPort(link, view, port, loader.bytes);
  }
  DrainOutput(link);
  CheckForNoResponse(link);
}

void RunBootstrap1(TransferRun& run) {
  Link& link = run.firmware.link;
  Session& session = link.session;
  if (!platform::FileExists(services::FindApplicationFile(session.paths, "bs.tsk"))) {
    return StopForFile(
        session, NLSText("The file bs.tsk does not exist. Please reinstall this application."));
  }
  run.view.EnableCancel(false);
  AskForBootstrapMode(run);
  if (session.Stopped()) return;
  run.view.ShowBootstrapHint(true);
  run.view.Repaint();
  SelectBaudRate(link, 1200);
  if (!SetPriority(session, true)) return;
  SendBootStrap1ToAllComms(link, run.view);
  if (!SetPriority(session, false)) return;
  if (session.Stopped()) return;

  services::WaitSecondsYielding(session, 1);
  CheckConfig(link);
  services::WaitSecondsYielding(session, 1);
  if (session.Stopped()) return;
  for (const int slot : kAllPorts) UpdateStatus(run, slot);
  run.view.EnableCancel(true);
}

void RunBootstrap2(TransferRun& run) {
  Link& link = run.firmware.link;
  Session& session = link.session;
  const std::string downloader = services::FindApplicationFile(session.paths, "dl.tsk");
  if (!platform::FileExists(downloader)) {
    return StopForFile(
        session, NLSText("The file dl.tsk does not exist. Please reinstall this application."));
  }
  run.view.ShowProgress(true);
  run.view.ShowCancel(true);
  run.view.ShowBootstrapHint(false);
  ClearInputBuffers(link);
  LoadDownloader(run, downloader);
  if (session.Stopped()) return;
  IdentifyRadios(run);
  if (session.Stopped()) return;
  CheckRadios(run);
  if (session.Stopped()) return;
  SendMode(link);
}

}  // namespace zep::firmware
