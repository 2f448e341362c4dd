#include "simulator/zepsim.h"

#include <iostream>

#include "platform/clock.h"
#include "platform/files.h"
#include "platform/interrupt.h"
#include "platform/terminal.h"
#include "services/fill_in.h"
#include "simulator/bench_report.h"
#include "simulator/radio_bench.h"
#include "simulator/samples.h"
#include "simulator/transcript.h"
#include "simulator/zepsim_options.h"

namespace zep::simulator {

namespace {

using platform::Duration;
using platform::SystemError;

constexpr int kDone = 0;
constexpr int kFailed = 1;

// An interrupt that comes between the last look and the wait is seen after this time at the latest.
constexpr Duration kLongestWait = std::chrono::milliseconds(100);

Duration Seconds(double seconds) {
  return std::chrono::duration_cast<Duration>(std::chrono::duration<double>(seconds));
}

int Fail(const SystemError& error) {
  std::cerr << "zepsim: " << error.subject << ": " << error.description << ". "
            << services::FillIn(error.advice, error.advice_arguments) << "\n";
  return kFailed;
}

SystemError Announce(const RadioBench& bench, const ZepsimOptions& options) {
  std::string devices;
  std::cout << "ready";
  for (const auto& place : bench.Places()) {
    std::cout << " " << place->Device();
    devices += place->Device() + "\n";
  }
  std::cout << std::endl;
  return options.ready_file.empty() ? SystemError{}
                                    : platform::WriteWholeFile(options.ready_file, devices);
}

// The technician at the keyboard, for radios that are not put into bootstrap mode by themselves: a
// line "1" does it for radio 1, "on 1" switches it off and on.
class Technician {
 public:
  explicit Technician(RadioBench& bench) : bench_(bench) {
    for (const auto& place : bench.Places()) listens_ |= place->Radio().Profile().manual;
    if (listens_) {
      std::cout << "Type a radio's number to put it into bootstrap mode, or \"on\" and its number "
                   "to switch it off and on.\n";
    }
  }

  void Listen() {
    while (listens_ && platform::WaitForStandardInput({})) {
      std::string line;
      listens_ = static_cast<bool>(std::getline(std::cin, line));
      Obey(line);
    }
  }

 private:
  void Obey(const std::string& line) {
    const bool on = line.starts_with("on ");
    const std::size_t number =
        static_cast<std::size_t>(Decimal(line.substr(on ? 3 : 0)).value_or(0));
    if (number < 1 || number > bench_.Places().size()) return;
    SimulatedRadio& radio = bench_.Places()[number - 1]->Radio();
    if (on) {
      radio.SwitchOffAndOn();
    } else {
      radio.PutIntoBootstrapMode();
    }
    std::cout << "Radio " << number << (on ? " is switched off and on." : " is in bootstrap mode.")
              << std::endl;
  }

  RadioBench& bench_;
  bool listens_ = false;
};

void Serve(RadioBench& bench, const ZepsimOptions& options, platform::Clock& clock,
           platform::Interrupts& interrupts) {
  Technician technician(bench);
  const Duration start = clock.Now();
  while (interrupts.Take() == 0 && bench.IsConnected()) {
    if (options.longest > 0 && clock.Now() - start >= Seconds(options.longest)) return;
    if (options.idle > 0 && bench.WasLeftAlone(Seconds(options.idle))) return;
    technician.Listen();
    bench.Turn(kLongestWait);
  }
}

int RunBench(ZepsimOptions& options) {
  platform::SystemClock clock;
  platform::Interrupts interrupts;  // before there are links to be removed
  platform::FileContents image;
  if (!options.compare.empty()) image = platform::ReadWholeFile(options.compare);
  if (image.error) return Fail(image.error);

  Transcript transcript(clock.Now());
  RadioBench bench(std::move(options.radios), clock);
  SystemError error;
  if (!options.transcript.empty()) {
    error = transcript.Open(options.transcript);
    int number = 0;
    for (const auto& place : bench.Places()) {
      place->SetListener(
          [&transcript, radio = ++number](const WireByte& byte) { transcript.Add(radio, byte); });
    }
  }
  if (!error) error = bench.Open(options.link);
  if (!error) error = Announce(bench, options);
  if (error) return Fail(error);

  Serve(bench, options, clock, interrupts);

  std::cout << "\n" << BenchReport(bench, BytesOf(image.bytes));
  error = transcript.EndLine();
  if (!error && !options.save_flash.empty()) error = SaveFlash(bench, options.save_flash);
  return error ? Fail(error) : kDone;
}

}  // namespace

int RunZepsim(std::vector<std::string> arguments) {
  ZepsimCommandLine line = ParseZepsimCommandLine(std::move(arguments));
  if (line.exit_status) {
    (*line.exit_status == kDone ? std::cout : std::cerr) << line.text;
    return *line.exit_status;
  }
  if (!line.options.samples.empty()) {
    const SystemError error = WriteSamples(line.options.samples);
    if (error) return Fail(error);
    std::cout << "Samples are in " << line.options.samples << "." << std::endl;
  }
  return line.options.radios.empty() ? kDone : RunBench(line.options);
}

}  // namespace zep::simulator
