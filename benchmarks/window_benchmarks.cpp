// What the windows cost while a job runs: how soon a click is answered, processor time and memory,
// and how much longer a download takes through them. On the real clock, under an X server.
//
//   window_benchmarks FOLDER     the folder holds the sample files
#include <algorithm>
#include <atomic>
#include <iostream>
#include <string>
#include <thread>
#include <vector>

#include <wx/app.h>
#include <wx/image.h>
#include <wx/init.h>
#include <wx/modalhook.h>
#include <wx/msgdlg.h>

#include "benchmarks/bench_session.h"
#include "firmware/frmWriteSWToRadio.h"
#include "platform/processes.h"
#include "programs/this_computer.h"
#include "shell/application.h"
#include "shell/frmMDI.h"
#include "shell/start_up.h"
#include "shell/toolkit.h"

namespace zep::benchmarks {
namespace {

using platform::Duration;

double Seconds(Duration duration) { return std::chrono::duration<double>(duration).count(); }
double Milliseconds(Duration duration) { return 1000 * Seconds(duration); }

// Clicks from another thread, twenty times a second, and how long each had to wait for its handler.
class Clicker {
 public:
  Clicker(wxEvtHandler& target, platform::Clock& clock) : clock_(clock) {
    target.Bind(wxEVT_THREAD, [this](wxThreadEvent& event) {
      waits.push_back(clock_.Now() - event.GetPayload<Duration>());
    });
    thread_ = std::thread([this, &target] {
      while (!ends_) {
        auto* click = new wxThreadEvent;
        click->SetPayload(clock_.Now());
        wxQueueEvent(&target, click);
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
      }
    });
  }
  ~Clicker() {
    ends_ = true;
    thread_.join();
  }
  std::vector<Duration> waits;

 private:
  platform::Clock& clock_;
  std::atomic<bool> ends_ = false;
  std::thread thread_;
};

// Nobody is there to answer message boxes.
class OkToAll final : public wxModalDialogHook {
 public:
  OkToAll() { Register(); }

 protected:
  int Enter(wxDialog* dialog) override {
    return dynamic_cast<wxMessageDialog*>(dialog) != nullptr ? wxID_OK : wxID_NONE;
  }
};

struct Bench {
  Bench(const std::string& folder, const std::vector<std::string>& devices)
      : world{{.clock = clock,
               .user_hive = hive,
               .machine_hive = machine_hive,
               .make_port =
                   [this](const std::string& device) { return programs::MakePort(device, clock); },
               .list_devices = [] { return std::vector<platform::SerialDeviceInfo>(); },
               .start_program = [](const std::string&) { return platform::SystemError{}; }},
              platform::GetSystemVersion,
              [] { return true; },
              [] {},
              [](const std::string&) { return platform::SystemError{}; }} {
    for (std::size_t port = 1; port <= devices.size(); ++port) {
      hive.Write("Software\\Vorn Electronics Ltd\\ZEP\\Download",
                 "CommPort" + std::to_string(port) + "State", "1");
    }
    application = std::make_unique<shell::Application>(
        world,
        shell::StartChoices{.application_folder = folder, .string_table = {}, .ports = devices});
    frame = shell::Main(*application, "");
    if (frame == nullptr) Fail("the main window does not open");
    firmware::ChooseImageFile(application->firmware.image, folder + "/model11-a1-1mbit.bin");
    if (!CheckForValidFile(application->session, application->firmware.image))
      Fail("the image is not valid");
  }

  // The data phase of a download through the engine's window.
  firmware::TransferStatistics Download() {
    link::Job job(application->link);
    firmware::frmWriteSWToRadio window(frame, application->context, application->link);
    // As an upgrade does: no report at the end, which nobody would answer here.
    const firmware::TransferResult result =
        window.Run(job, application->firmware, link::Transfer::kProgram,
                   {.at_once = true, .automatic_upgrade = true});
    if (!result.succeeded) Fail("the download does not succeed");
    return result.statistics;
  }

  platform::SystemClock clock;
  platform::MemoryHive hive;
  platform::MemoryHive machine_hive;
  shell::DesktopComputer world;
  std::unique_ptr<shell::Application> application;
  shell::frmMDI* frame = nullptr;
};

void Unpaced(const std::string& folder) {
  Bench bench(folder, {"sim:torvik,unpaced"});
  const firmware::TransferStatistics with = bench.Download();

  BenchSession quiet(bench.clock, folder);
  QuietWindows windows;
  platform::NoIoPorts io_ports;
  link::Ports ports;
  for (auto& port : ports) port = programs::MakePort("sim:torvik,unpaced", bench.clock);
  link::Link link(quiet.session, std::move(ports), windows, io_ports);
  link.CommStates = {link::PortState::kActive, link::PortState::kNotAvailable,
                     link::PortState::kNotAvailable, link::PortState::kNotAvailable};
  link::Job job(link);
  firmware::Firmware firmware;
  firmware.image = bench.application->firmware.image;
  QuietTransfer view;
  firmware::TransferRun run(job, firmware, view, link::Transfer::kProgram,
                            {.at_once = true, .automatic_upgrade = true});
  const firmware::TransferStatistics without = RunTransfer(run).statistics;
  std::cout << "1 Mbit unpaced, data phase   " << Seconds(with.ended - with.began)
            << " s through the window, " << Seconds(without.ended - without.began)
            << " s without\n";
}

void Paced(const std::string& folder) {
  Bench bench(folder, {"sim:torvik,paced,serial=10000001", "sim:torvik,paced,serial=10000002",
                       "sim:torvik,paced,serial=10000003", "sim:torvik,paced,serial=10000004"});
  Clicker clicker(*bench.frame, bench.clock);
  const Duration processor = platform::ProcessorTime();
  const Duration began = bench.clock.Now();
  const firmware::TransferStatistics data = bench.Download();
  const double share =
      Seconds(platform::ProcessorTime() - processor) / Seconds(bench.clock.Now() - began);
  std::vector<Duration> waits = clicker.waits;
  if (waits.empty()) Fail("no click was answered");
  std::sort(waits.begin(), waits.end());
  std::cout << "1 Mbit to four at 9600 baud  " << Seconds(data.ended - data.began)
            << " s in the data phase\n"
            << "processor time of that       " << 100 * share
            << " % of a core, the simulated radios included\n"
            << "a click is answered within   " << Milliseconds(waits[waits.size() / 2])
            << " ms (median), " << Milliseconds(waits[waits.size() * 98 / 100])
            << " ms (98 of 100), " << Milliseconds(waits.back())
            << " ms (in one of the radio's pauses of half a second)\n"
            << "peak memory                  "
            << static_cast<double>(platform::PeakMemory()) / (1 << 20) << " MB\n";
}

}  // namespace
}  // namespace zep::benchmarks

int main(int argc, char** argv) {
  if (argc < 2) zep::benchmarks::Fail("please name the folder with the sample files");
  const std::string folder = argv[1];
  zep::shell::PrepareToolkit();
  wxApp::SetInstance(new wxApp);
  if (!wxEntryStart(argc, argv)) zep::benchmarks::Fail("there is no screen");
  wxTheApp->SetExitOnFrameDelete(false);
  wxImage::AddHandler(new wxPNGHandler);
  const zep::benchmarks::OkToAll ok_to_all;
  zep::benchmarks::Unpaced(folder);
  if (argc < 3) zep::benchmarks::Paced(folder);
  // The windows end with the process.
  std::cout.flush();
  std::_Exit(0);
}
