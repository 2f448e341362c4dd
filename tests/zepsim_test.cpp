#include "simulator/zepsim.h"

#include <atomic>
#include <thread>

#include <gtest/gtest.h>

#include "platform/serial_device.h"
#include "simulator/bench_report.h"
#include "simulator/radio_bench.h"
#include "tests/simulator_testing.h"
#include "tests/testing.h"

namespace zep::simulator {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

// A bench that is served in a thread of its own, as zepsim is a program of its own.
struct ServedBench {
  explicit ServedBench(const std::string& radio) : bench({testing::ProfileOf(radio)}, clock) {
    EXPECT_FALSE(bench.Open(folder.Path("radio")));
    thread = std::thread([this] {
      while (!ended) bench.Turn(milliseconds(5));
    });
  }
  ~ServedBench() { End(); }
  void End() {
    ended = true;
    if (thread.joinable()) thread.join();
  }

  testing::TempFolder folder;
  platform::SystemClock clock;
  RadioBench bench;
  std::atomic<bool> ended = false;
  std::thread thread;
};

// A program with one radio's device open.
class Program {
 public:
  explicit Program(const std::string& device, const char* settings = "9600,n,8,1")
      : port_(platform::MakeSerialDevice(device)) {
    EXPECT_FALSE(port_->SetSettings(settings));
    EXPECT_FALSE(port_->Open());
  }
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
  ServedBench bench("conventional,unpaced");
  const std::string device = bench.folder.Path("radio1");
  EXPECT_TRUE(std::filesystem::is_symlink(device));
  {
    Program program(device);
    EXPECT_EQ(program.Ask("^#b\rw0900021234AF\re\r", 5), "v>>>>");
  }
  Program program(device);
  EXPECT_EQ(program.Ask("^#r09\r", 16), "v>0900021234AF\r>");
}

TEST(Zepsim, TheSpeedOfTheTerminalIsThatOfTheLine) {
  ServedBench bench("torvik,unpaced");
  Program program(bench.folder.Path("radio1"), "1200,n,8,1");
  program.Write(Bytes(257, 0xFF));
  EXPECT_EQ(program.Read(1), "\x0F") << "the boot ROM hears 1200 baud only";
}

TEST(Zepsim, FlashesAreComparedAndSaved) {
  ServedBench bench("torvik");
  bench.End();
  Bytes image = bench.bench.Places()[0]->Radio().FlashMemory().Contents();
  EXPECT_NE(BenchReport(bench.bench, image).find("equal to the image\n"), std::string::npos);
  image[0x1080] ^= 1;
  EXPECT_NE(BenchReport(bench.bench, image)
                .find("1 bytes differ from the image, the first at 0x001080\n"),
            std::string::npos);
  EXPECT_FALSE(SaveFlash(bench.bench, bench.folder.Path("flash")));
  EXPECT_EQ(bench.folder.Read("flash/radio1.bin")->size(), 131072U);
}

TEST(Zepsim, ACutLineIsAHangUp) {
  ServedBench bench("torvik,unpaced,fault=cut@prompt");
  Program program(bench.folder.Path("radio1"));
  EXPECT_EQ(program.Ask("^", 1), "v");
  program.Write({'#'});
  EXPECT_TRUE(program.WaitForFailure());
  bench.End();
  EXPECT_FALSE(bench.bench.IsConnected());
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
