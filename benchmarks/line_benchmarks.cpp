// What goes over serial lines, on the real clock:
//
//   line_benchmarks wait
//       how a program waits for a radio: processor time, and how soon it sees a reply
//   line_benchmarks wire FOLDER
//       a paced 1 Mbit download to one radio, and to four at once (over three minutes); the sample
//       files are written into the folder

#include <algorithm>
#include <cstdio>
#include <string>
#include <thread>
#include <vector>

#include "benchmarks/bench_session.h"
#include "firmware/transfer_engine.h"
#include "link/byte_exchange.h"
#include "platform/files.h"
#include "platform/processes.h"
#include "platform/pseudo_terminal.h"
#include "platform/serial_device.h"
#include "services/paths.h"
#include "simulator/samples.h"
#include "simulator/simulated_port.h"

namespace zep::benchmarks {
namespace {

using std::chrono::milliseconds;

double Seconds(platform::Duration duration) {
  return std::chrono::duration<double>(duration).count();
}

link::Ports FillUp(link::Ports ports) {
  for (auto& port : ports) {
    if (!port) port = platform::MakeSerialDevice("");
  }
  return ports;
}

// Waits for bytes that the far end sends after 20 ms each, on a pseudo-terminal.
void MeasureWaiting() {
  constexpr int kReplies = 200;
  platform::SystemClock clock;
  BenchSession bench(clock);
  platform::PseudoTerminal radio;
  if (const platform::SystemError error = radio.Open()) Fail(error.description);
  link::Ports ports;
  ports[0] = platform::MakeSerialDevice(radio.SlaveName());
  QuietWindows windows;
  platform::NoIoPorts io;
  link::Link link(bench.session, FillUp(std::move(ports)), windows, io);
  link.State(1) = link::PortState::kActive;
  link::Job job(link);
  if (!InitialiseComms(job)) Fail(bench.user.last_box);

  std::vector<platform::Duration> sent(kReplies);
  std::thread far_end([&] {
    const std::uint8_t reply = 'a';
    for (platform::Duration& at : sent) {
      std::this_thread::sleep_for(milliseconds(20));
      at = clock.Now();
      radio.Write({&reply, 1});
    }
  });
  std::vector<platform::Duration> seen(kReplies);
  const platform::Duration began = clock.Now();
  const platform::Duration processor_before = platform::ProcessorTime();
  for (platform::Duration& at : seen) {
    GetByteFromSpecficComms(job, 1, 'a');
    at = clock.Now();
  }
  const double elapsed = Seconds(clock.Now() - began);
  const double processor = Seconds(platform::ProcessorTime() - processor_before);
  far_end.join();
  std::vector<double> delays;
  for (int at = 0; at < kReplies; ++at) {
    const auto index = static_cast<std::size_t>(at);
    delays.push_back(Seconds(seen[index] - sent[index]) * 1000);
  }
  std::ranges::nth_element(delays, delays.begin() + kReplies / 2);
  std::printf("waiting for a radio          %.2f %% of one core\n", processor / elapsed * 100);
  std::printf("reply seen after (median)    %.3f ms\n", delays[kReplies / 2]);
}

// The data phase of a 1 Mbit download to paced radios, in seconds.
double MeasureDownload(int radios, bool at_once, const std::string& folder) {
  platform::SystemClock clock;
  BenchSession bench(clock, folder);
  link::Ports ports;
  for (int at = 0; at < radios; ++at) {
    auto port = simulator::MakeSimulatedPort("sim:torvik", clock);
    if (!port.value) Fail(port.error);
    ports[static_cast<std::size_t>(at)] = std::move(*port.value);
  }
  QuietWindows windows;
  platform::NoIoPorts io;
  QuietTransfer view;
  link::Link link(bench.session, FillUp(std::move(ports)), windows, io);
  for (int port = 1; port <= radios; ++port) link.State(port) = link::PortState::kActive;
  link::Job job(link);
  firmware::Firmware firmware;
  firmware::ChooseImageFile(firmware.image, services::AppMakePath(folder, "model11-a1-1mbit.bin"));
  if (!CheckForValidFile(bench.session, firmware.image)) Fail(bench.user.last_box);
  firmware::TransferRun run(job, firmware, view, link::Transfer::kProgram, {.at_once = at_once});
  const firmware::TransferResult result = RunTransfer(run);
  if (!result.succeeded || result.statistics.blocks != 723) Fail(bench.user.last_box);
  return Seconds(result.statistics.ended - result.statistics.began);
}

void MeasureWire(const std::string& folder) {
  if (const platform::SystemError error = simulator::WriteSamples(folder)) Fail(error.description);
  // 723 blocks of 128 bytes and their acknowledgements, 10 bits a byte.
  constexpr double kBitsOnTheWire = 723.0 * (128 + 1) * 10;
  const double one = MeasureDownload(1, false, folder);
  std::printf("data phase, one radio        %.2f s, %.2f %% of what 9600 baud can carry\n", one,
              kBitsOnTheWire / 9600 / one * 100);
  const double four = MeasureDownload(4, true, folder);
  std::printf("data phase, four at once     %.2f s, %.3f times that of one\n", four, four / one);
}

}  // namespace
}  // namespace zep::benchmarks

int main(int count, char** arguments) {
  const std::string what = count > 1 ? arguments[1] : "";
  if (what == "wait") {
    zep::benchmarks::MeasureWaiting();
  } else if (what == "wire" && count > 2) {
    zep::benchmarks::MeasureWire(arguments[2]);
  } else {
    std::fprintf(stderr, "usage: line_benchmarks wait | wire FOLDER\n");
    return 2;
  }
  return 0;
}
