#include "simulator/zepsim.h"

#include <atomic>
#include <chrono>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "platform/serial_device.h"
#include "simulator/bench_report.h"
#include "simulator/radio_bench.h"
#include "simulator/transcript.h"
#include "simulator/zepsim_options.h"
#include "tests/simulator_testing.h"
#include "tests/testing.h"

namespace zep::simulator {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

// A bench that is served in a thread of its own, as zepsim is a program of its own.
class ServedBench {
 public:
  explicit ServedBench(const std::vector<std::string>& radios) : bench(Profiles(radios), clock_) {
    EXPECT_FALSE(bench.Open(folder.Path("radio")));
    thread_ = std::thread([this] {
      while (!ended_) bench.Turn(milliseconds(5));
    });
  }
  ~ServedBench() { End(); }
  void End() {
    ended_ = true;
    if (thread_.joinable()) thread_.join();
  }

  testing::TempFolder folder;

 private:
  static std::vector<RadioProfile> Profiles(const std::vector<std::string>& radios) {
    std::vector<RadioProfile> profiles;
    for (const std::string& radio : radios) profiles.push_back(testing::ProfileOf(radio));
    return profiles;
  }
  platform::SystemClock clock_;

 public:
  RadioBench bench;

 private:
  std::atomic<bool> ended_ = false;
  std::thread thread_;
};

// A program with one radio's device open.
class Program {
 public:
  explicit Program(const std::string& device, const char* settings = "9600,n,8,1")
      : port_(platform::MakeSerialDevice(device)) {
    EXPECT_FALSE(port_->SetSettings(settings));
    EXPECT_FALSE(port_->Open());
  }
  void SetSettings(const char* settings) { EXPECT_FALSE(port_->SetSettings(settings)); }
  void Write(const Bytes& bytes) { port_->Write(bytes); }
  // Writes and returns the next count bytes that come back.
  std::string Ask(std::string_view text, std::size_t count) {
    Write(BytesOf(text));
    return Read(count);
  }
  std::string Read(std::size_t count) {
    std::string answer;
    while (answer.size() < count) {
      if (port_->InputCount() == 0) port_->WaitForInput(seconds(2));
      const auto byte = port_->Read();
      if (!byte) break;
      answer += static_cast<char>(*byte);
    }
    return answer;
  }
  platform::SystemError WaitForFailure() {
    port_->WaitForInput(seconds(2));
    return port_->TakeError();
  }

 private:
  std::unique_ptr<platform::SerialPort> port_;
};

TEST(Zepsim, ProgramsComeAndGoAndFindTheRadioAsItWasLeft) {
  ServedBench bench({"conventional,unpaced", "trunked,unpaced"});
  const std::string first = bench.folder.Path("radio1");
  const std::string second = bench.folder.Path("radio2");
  EXPECT_TRUE(std::filesystem::is_symlink(first));
  {
    Program program(first);
    EXPECT_EQ(program.Ask("^#b\rw0900021234AF\re\r", 5), "v>>>>");
  }
  Program program(first);
  EXPECT_EQ(program.Ask("^#r09\r", 16), "v>0900021234AF\r>");
  EXPECT_EQ(Program(second).Ask("^#d03\r", 3), "v>>");
  bench.End();
  EXPECT_EQ(bench.bench.Places()[0]->BytesIn(), 26U);
  EXPECT_EQ(bench.bench.Places()[0]->BytesOut(), 21U);
}

TEST(Zepsim, FirmwareGoesThroughThePseudoTerminal) {
  ServedBench bench({"torvik,unpaced"});
  Program program(bench.folder.Path("radio1"), "1200,n,8,1");
  program.Write(Bytes(257, 0xFF));
  EXPECT_EQ(program.Read(1), "\x0F");
  program.Write({'0'});
  std::this_thread::sleep_for(
      milliseconds(50));  // the speed may change once the "0" has been heard
  program.SetSettings("9600,n,8,1");
  EXPECT_EQ(program.Ask("BxE", 3),
            "\x1F\xD5"
            "a");
  EXPECT_EQ(program.Ask("r0", 2), "r0");
  program.Write({0x00, 0x10, 0x80, 0x00, 0x7F});
  EXPECT_EQ(program.Read(5), std::string("\x00\x10\x80\x00\x7F", 5));
  Bytes image = bench.bench.Places()[0]->Radio().FlashMemory().Contents();
  for (std::size_t at = 0x1080; at < 0x5000; at += 128) {
    image[at] ^= 0xFF;
    program.Write(Bytes(image.begin() + static_cast<std::ptrdiff_t>(at),
                        image.begin() + static_cast<std::ptrdiff_t>(at + 128)));
    ASSERT_EQ(program.Read(1), ".");
  }
  bench.End();
  const std::string report = BenchReport(bench.bench, image);
  EXPECT_NE(report.find("127             0            0         0       equal to the image\n"),
            std::string::npos)
      << report;
  image[0x1080] ^= 1;
  EXPECT_NE(BenchReport(bench.bench, image)
                .find("1 bytes differ from the image, the first at 0x001080\n"),
            std::string::npos);
  EXPECT_FALSE(SaveFlash(bench.bench, bench.folder.Path("flash")));
  EXPECT_EQ(bench.folder.Read("flash/radio1.bin")->size(), 131072U);
}

TEST(Zepsim, ACutLineIsAHangUp) {
  ServedBench bench({"torvik,unpaced,fault=cut@prompt"});
  Program program(bench.folder.Path("radio1"));
  EXPECT_EQ(program.Ask("^", 1), "v");
  program.Write({'#'});
  EXPECT_TRUE(program.WaitForFailure());
  bench.End();
  EXPECT_FALSE(bench.bench.IsConnected());
}

TEST(Zepsim, ABenchKnowsWhenItIsLeftAlone) {
  platform::VirtualClock clock;
  RadioBench bench({testing::ProfileOf("torvik,unpaced,fault=slow@caret=5000")}, clock);
  EXPECT_FALSE(bench.Open(""));
  const auto later = [&](int count) {
    clock.Sleep(seconds(count));
    bench.Turn({});
    return bench.WasLeftAlone(seconds(2));
  };
  EXPECT_FALSE(later(9));  // nobody has come yet
  Program program(bench.Places()[0]->Device());
  program.Write({'^'});
  EXPECT_FALSE(later(1));
  EXPECT_FALSE(later(4));  // the answer is still to come
  EXPECT_FALSE(later(1));
  EXPECT_TRUE(later(2));
}

TEST(Zepsim, TheTranscriptIsForPeople) {
  testing::TempFolder folder;
  {
    Transcript transcript(seconds(10));
    EXPECT_FALSE(transcript.Open(folder.Path("wire.txt")));
    platform::Duration time = seconds(10) + milliseconds(5);
    for (const char letter : std::string("r00\r")) {
      transcript.Add(1, {static_cast<std::uint8_t>(letter), 9600, time += milliseconds(1), false});
    }
    for (int byte = 0x30; byte < 0x42; ++byte) {
      transcript.Add(1, {static_cast<std::uint8_t>(byte), 9600, time, true});
    }
    transcript.Add(2, {0xFF, 1200, time, true});
    transcript.Add(2, {0x00, 1200, time + seconds(1), true});
  }
  EXPECT_EQ(folder.Read("wire.txt"),
            "       time radio  baud\n"
            "   0.006000     1  9600 > 72 30 30 0D                                     r00.\n"
            "   0.009000     1  9600 < 30 31 32 33 34 35 36 37 38 39 3A 3B 3C 3D 3E 3F "
            "0123456789:;<=>?\n"
            "   0.009000     1  9600 < 40 41                                           @A\n"
            "   0.009000     2  1200 < FF                                              .\n"
            "   1.009000     2  1200 < 00                                              .\n");
}

TEST(Zepsim, TheCommandLineIsChecked) {
  struct Row {
    const char* name;
    std::vector<std::string> arguments;
    int status;
    const char* text;
  };
  for (const Row& row : std::vector<Row>{
           {"help", {"--help"}, 0, "AT29C010A"},
           {"unknown radio", {"radio"}, 2, "zepsim: \"radio\" is no simulated radio."},
           {"five radios", {"torvik", "torvik", "torvik", "torvik", "torvik"}, 2, "four radios"},
           {"unknown option", {"--speed"}, 2, "--speed"},
           {"both paces", {"--pace", "--unpaced"}, 2, "exclude each other"},
       }) {
    SCOPED_TRACE(row.name);
    const ZepsimCommandLine line = ParseZepsimCommandLine(row.arguments);
    EXPECT_EQ(line.exit_status, row.status);
    EXPECT_NE(line.text.find(row.text), std::string::npos) << line.text;
  }
  const ZepsimCommandLine line = ParseZepsimCommandLine(
      {"trunked,networks=2", "torvik", "--unpaced", "--link", "/tmp/r", "--once"});
  EXPECT_EQ(line.exit_status, std::nullopt) << line.text;
  ASSERT_EQ(line.options.radios.size(), 2U);
  EXPECT_EQ(line.options.radios[0].networks, 2);
  EXPECT_FALSE(line.options.radios[1].paced);
  EXPECT_EQ(line.options.idle, 6);
  EXPECT_EQ(ParseZepsimCommandLine({}).options.radios.size(), 1U);
  EXPECT_TRUE(ParseZepsimCommandLine({"--samples", "d"}).options.radios.empty());
}

TEST(Zepsim, AWholeRunTellsItsDevicesAndLeavesNoLinkBehind) {
  testing::TempFolder folder;
  EXPECT_EQ(RunZepsim({"torvik", "--link", folder.Path("r"), "--ready-file", folder.Path("ready"),
                       "--for", "0.05", "--transcript", folder.Path("wire.txt")}),
            0);
  EXPECT_EQ(folder.Read("ready"), folder.Path("r1") + "\n");
  EXPECT_FALSE(std::filesystem::is_symlink(folder.Path("r1")));
  folder.Write("r1", "a file of somebody");
  EXPECT_EQ(RunZepsim({"torvik", "--link", folder.Path("r"), "--for", "0.05"}), 1);
  EXPECT_EQ(folder.Read("r1"), "a file of somebody");
  EXPECT_EQ(RunZepsim({"torvik", "--compare", folder.Path("missing.bin")}), 1);
}

}  // namespace
}  // namespace zep::simulator
