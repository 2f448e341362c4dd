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

using link::Job;
using link::kAllPorts;
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

void SendBootstrapToPort(Job& job, TransferView& view, int port, const std::string& loader) {
  Session& session = job.session;
  view.SetProgressMaximum(static_cast<int>(kBootstrapSize));
  view.ShowStatus(NLSFmt(session, "Writing bootstrap file 1 to communication port %0:s",
                         {std::to_string(port)}));
  SendStringToSpecificComms(job, kBootstrapStart, port);
  int sent = 0;
  for (const char byte : loader) {
    SendByteToSpecificComms(job, static_cast<std::uint8_t>(byte), port);
    ShortenOutput(job, port, link::kBytesAhead);
    // A slow processor leaves the bar alone, so that the line is kept fed.
    if (session.fast_processor) view.SetProgress(++sent);
    if (job.DownloadError || !job.IsActive(port)) return;
  }
}

// To install the application anew does not help everyone.
void StopForLoader(Job& job, std::string_view text) {
  Session& session = job.session;
  std::string box = NLSFmt(session, text) + "\n";
  box += NLSFmt(session,
                "The files bs.tsk and dl.tsk come with the radio's firmware. Please put them into "
                "the folder %0:s.",
                {session.paths.application_folder});
  NLSMsgBox(session, box, {.icon = Icon::kCritical});
  job.RequestCancel(Failure::kFile);
}

// Half a loader would leave the radio deaf: a wish to cancel is kept until all of it is sent.
class UncancelledStep {
 public:
  explicit UncancelledStep(TransferRun& run) : run_(run) {
    step_.emplace(run.job, link::Cancelling::kWaits);
    run_.view.EnableCancel(false);
  }
  ~UncancelledStep() {
    step_.reset();  // follows the wish
    if (!run_.job.Stopped()) run_.view.EnableCancel(true);
  }
  UncancelledStep(const UncancelledStep&) = delete;
  UncancelledStep& operator=(const UncancelledStep&) = delete;

 private:
  TransferRun& run_;
  std::optional<link::Job::Step> step_;
};

void AskForBootstrapMode(TransferRun& run) {
  const Session& session = run.job.session;
  std::string text = NLSFmt(session, "Please put radio in Bootstrap mode.");
  if (run.firmware.image.FirmwareRadioModel == kModelHeldOn) {
    text += "\n\n" + NLSFmt(session,
                            "NOTE: For %0:s radios the On button must be pressed until bootstrap1 "
                            "file is loaded",
                            {radiodb::AppGetRadioModel(session, kModelHeldOn)});
  }
  NLSMsgBox(run.job.session, text, {.notice = services::Notice::kAwaitsAction});
}

// False when the run must not go on without the priority. Only Windows grants it to everybody;
// elsewhere the loader is sent at normal priority.
bool SetPriority(Job& job, bool time_critical) {
  Session& session = job.session;
  const platform::SystemError error = platform::SetThreadTimeCritical(time_critical);
  if (!error) return true;
#ifdef _WIN32
  ReportError(session, error, "WriteRadioSW");
  job.RequestCancel(Failure::kRefused);
  return false;
#else
  session.log.Error("The first loader is sent at normal priority: " + error.description);
  return true;
#endif
}

void SendBytes(TransferRun& run, const std::string& downloader) {
  Job& job = run.job;
  int sent = 0;
  for (const char byte : downloader) {
    SendByteToAllComms(job, static_cast<std::uint8_t>(byte));
    ShortenOutput(job, link::kBytesAhead);
    job.session.PumpEvents();
    if (job.Stopped()) return;
    run.view.SetProgress(++sent);
  }
}

void SwitchToDownloadSpeed(Job& job) {
  const bool high_speed = job.session.high_speed;
  SendByteToAllComms(job, high_speed ? 0x00 : '0');
  services::WaitSeconds(job.session, 0.5);
  SelectBaudRate(job, high_speed ? 125000 : 9600);
}

// Loads the downloader into every radio's RAM and starts it.
void LoadDownloader(TransferRun& run, const std::string& file_name) {
  Job& job = run.job;
  Session& session = job.session;
  SwitchToDownloadSpeed(job);
  SendByteToAllComms(job, 'B');
  const platform::FileContents downloader = platform::ReadWholeFile(file_name);
  if (downloader.error) {
    ReportError(session, downloader.error, "WriteRadioSW");
    return job.RequestCancel(Failure::kFile);
  }
  if (downloader.bytes.empty() || downloader.bytes.size() > kLongestDownloader) {
    return StopForLoader(job,
                         NLSText("The file dl.tsk is corrupt. Please reinstall this application."));
  }
  run.view.SetProgressMaximum(static_cast<int>(downloader.bytes.size()));
  UpdateStatusBar(run, NLSText("Writing bootstrap file 2"));
  ClearInputBuffers(job.link);
  SendBytes(run, downloader.bytes);
  if (job.Stopped()) return;
  SendByteToAllComms(job, 'E');
  DrainOutput(job);
  services::WaitSecondsYielding(session, 1);
}

void IdentifyRadios(TransferRun& run) {
  for (const int port : kAllPorts) {
    UpdateStatus(run, port);
    UpdateFlashMicro(run, port);
  }
  // No radio has told which map is its own; the user knows why already.
  if (!run.job.Stopped() && run.micro_type == MicroType::kUnknown)
    run.job.SetDownloadError(Failure::kRefused);
}

void CheckRadios(TransferRun& run) {
  run.view.Repaint();
  ShowChangedStates(run);
  VerifyFlashFile(run);
  if (run.job.DownloadError) return;
  const auto any = [&run](MicroType micro) {
    return std::ranges::any_of(run.result.ports,
                               [micro](const PortFacts& radio) { return radio.micro == micro; });
  };
  if (!any(MicroType::kA1) || !any(MicroType::kE1)) return;
  NLSMsgBox(run.job.session, "You cannot program an E1 and an A1 radio at the same time",
            {.icon = Icon::kCritical});
  run.job.SetDownloadError(Failure::kRefused);
}

void SendMode(TransferRun& run) {
  for (const char byte : {run.IsUpload() ? 't' : 'r', '0'}) {
    const auto command = static_cast<std::uint8_t>(byte);
    SendByteToAllComms(run.job, command, {.wait = true, .expected = command});
  }
}

}  // namespace

void SendBootStrap1ToAllComms(Job& job, TransferView& view) {
  Session& session = job.session;
  const platform::FileContents loader =
      platform::ReadWholeFile(services::FindApplicationFile(session.paths, "bs.tsk"));
  if (loader.error) {
    ReportError(session, loader.error, "SendBootStrap1ToAllComms");
    job.RequestCancel(Failure::kFile);
    return;
  }
  if (loader.bytes.size() != kBootstrapSize) {
    NLSMsgBox(session, "Invalid bootstrap file (bs.tsk)");
    job.RequestCancel(Failure::kFile);
    CheckForNoResponse(job);
    return;
  }
  for (const int port : kAllPorts) {
    if (job.IsActive(port)) SendBootstrapToPort(job, view, port, loader.bytes);
  }
  DrainOutput(job);
  CheckForNoResponse(job);
}

void RunBootstrap1(TransferRun& run) {
  Job& job = run.job;
  Session& session = job.session;
  if (!platform::FileExists(services::FindApplicationFile(session.paths, "bs.tsk"))) {
    return StopForLoader(
        job, NLSText("The file bs.tsk does not exist. Please reinstall this application."));
  }
  const UncancelledStep step(run);
  AskForBootstrapMode(run);
  if (job.Stopped()) return;
  run.view.ShowBootstrapHint(true);
  run.view.Repaint();
  SelectBaudRate(job, 1200);
  if (!SetPriority(job, true)) return;
  SendBootStrap1ToAllComms(job, run.view);
  if (!SetPriority(job, false)) return;
  if (job.Stopped()) return;

  services::WaitSecondsYielding(session, 1);
  CheckConfig(job);
  services::WaitSecondsYielding(session, 1);
  if (job.Stopped()) return;
  for (const int port : kAllPorts) UpdateStatus(run, port);
}

void RunBootstrap2(TransferRun& run) {
  Job& job = run.job;
  Session& session = job.session;
  const std::string downloader = services::FindApplicationFile(session.paths, "dl.tsk");
  if (!platform::FileExists(downloader)) {
    return StopForLoader(
        job, NLSText("The file dl.tsk does not exist. Please reinstall this application."));
  }
  run.view.ShowProgress(true);
  run.view.ShowCancel(true);
  run.view.ShowBootstrapHint(false);
  ClearInputBuffers(job.link);
  LoadDownloader(run, downloader);
  if (job.Stopped()) return;
  IdentifyRadios(run);
  if (job.Stopped()) return;
  CheckRadios(run);
  if (job.Stopped()) return;
  SendMode(run);
}

}  // namespace zep::firmware
