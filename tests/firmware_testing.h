// Firmware files, a view that takes notes, and a bench of scripted or simulated radios, for tests
// of the firmware work.
#pragma once

#include <map>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "firmware/firmware.h"
#include "firmware/transfer_engine.h"
#include "link/byte_exchange.h"
#include "radiodb/read_write_view.h"
#include "simulator/simulated_port.h"
#include "tests/link_testing.h"

namespace zep::testing {

// An image file of A5 bytes with the marker and what follows it at an offset.
inline std::string ImageBytes(std::size_t size, std::string_view identity, std::size_t offset) {
  std::string image(size, '\xA5');
  if (offset < size) image.replace(offset, identity.size(), identity);
  return image.substr(0, size);
}

// "1<EE 1<EE 1<EE" is "1<EE*3".
inline std::string Shorten(const std::string& wire) {
  std::istringstream tokens(wire + " end");
  std::string text;
  std::string last;
  int times = 0;
  for (std::string token; tokens >> token; last = token) {
    if (token != last) {
      if (times > 1) text += "*" + std::to_string(times);
      if (token != "end") text += (text.empty() ? "" : " ") + token;
      times = 0;
    }
    ++times;
  }
  return text;
}

// Boxes with the usual texts as a word each: "ask; silent; done 1; failed 2; ".
inline std::string Brief(std::string boxes) {
  constexpr std::array<std::array<const char*, 2>, 12> kWords = {{
      {"information Please put radio in Bootstrap mode.", "ask"},
      {"information The radio is not responding, please check the connections.", "silent"},
      {"information There is no response from any of the communication ports.", "nobody"},
      {"information Completed downloading firmware to radio on communication port", "done"},
      {"critical Error downloading firmware to radio on communication port", "failed"},
      {"information Completed uploading firmware from radio on communication port", "read"},
      {"critical You cannot program an A1 file into a E1 radio.", "A1 into E1"},
      {"critical You cannot load a 2 megabit file into a 1 megabit flash.", "2 into 1"},
      {"critical The version of firmware you have selected to download is incompatible with the "
       "radio hardware - the firmware will not run on this radio's microprocessor.",
       "hardware"},
      {"critical A flash device is not recognised.", "unknown"},
      {" Please choose another file.", ""},
      {" -> OK\n", "; "},
  }};
  for (const auto& [text, word] : kWords) {
    for (std::size_t at = 0; (at = boxes.find(text)) != std::string::npos;)
      boxes.replace(at, std::string_view(text).size(), word);
  }
  return boxes;
}

// Shows nothing, for tests of what a procedure does and not of how it is watched.
class QuietView : public firmware::TransferView, public radiodb::ReadWriteView {
 public:
  void SetCaption(const std::string&) override {}
  void ShowStatus(const std::string&) override {}
  void SetProgressMaximum(int) override {}
  void SetProgress(int) override {}
  void ShowProgress(bool) override {}
  void EnableCancel(bool) override {}
  void ShowCancel(bool) override {}
  void ShowBootstrapHint(bool) override {}
  void SetPort(int, const firmware::PortFacts&) override {}
  void Repaint() override {}
};

// Notes what is shown, a line each, but for progress values.
struct NotedView final : QuietView {
  std::string notes;
  int progress = 0;
  std::function<void(const std::string&)> on_status;
  std::map<int, firmware::PortFacts> ports;

  void SetCaption(const std::string& caption) override { notes += caption + "\n"; }
  void ShowStatus(const std::string& status) override {
    notes += status + "\n";
    if (on_status) on_status(status);
  }
  void SetProgressMaximum(int most) override { notes += "0 to " + std::to_string(most) + "\n"; }
  void SetProgress(int value) override { progress = value; }
  void EnableCancel(bool enabled) override { notes += enabled ? "cancel on\n" : "cancel off\n"; }
  void SetPort(int port, const firmware::PortFacts& facts) override { ports[port] = facts; }
};

struct FirmwareBench : TestLink {
  FirmwareBench() {
    folder.Write("bs.tsk", std::string(256, 'b'));
    folder.Write("dl.tsk", "d");
    Choose(ImageBytes(131072, "ZEP-xx11 ", 0x8000));
  }
  // Makes the bytes the chosen image; it must be a valid one.
  void Choose(const std::string& bytes) {
    firmware::ChooseImageFile(firmware.image, folder.Write("image.bin", bytes));
    EXPECT_TRUE(CheckForValidFile(session, firmware.image));
  }

  // Loaders that say what is expected of them, so that whole conversations can be written out. The
  // A1 map is cut down to one row of two blocks, 0100 to 0200 of bank 0.
  void Script(const std::vector<int>& ports) {
    for (firmware::MemoryMapEntry& row : firmware.A1MemoryMap)
      row.Kind = firmware::RowKind::kLeftOut;
    firmware.A1MemoryMap[1].Kind = firmware::RowKind::kTransferred;
    firmware.A1MemoryMap[1].Blocks = 2;
    for (const int number : ports) {
      TestLink::Choose(number);
      port(number).Answer("E", "\x1F\xD5\x61");
      for (const char byte : std::string("r0t\0\1\2", 6))
        port(number).Answer(std::string(1, byte), std::string(1, byte));
      port(number).Answer(std::string(128, '\xA5'), ".");
    }
  }
  // Simulated radios, one a word, on the ports from 1 on; unpaced unless they say so.
  void Simulate(const std::string& radios) {
    std::istringstream words(radios);
    for (std::string radio; words >> radio;) {
      if (radio.find(",paced") == std::string::npos) radio += ",unpaced";
      auto made = simulator::MakeSimulatedPort("sim:" + radio, clock);
      ASSERT_EQ(made.error, "");
      simulated.push_back(made.value->get());
      TestLink::Choose(static_cast<int>(simulated.size()));
      link.ports[simulated.size() - 1] = std::move(*made.value);
    }
  }

  std::string Boxes() { return Brief(user.Boxes()); }

  // How it went: a digit a port (0 not used, 1 done, 2 failed), blocks, the number of the failure.
  std::string Run(const firmware::TransferOptions& options = {},
                  link::Transfer direction = link::Transfer::kProgram) {
    RestoreCommStates(job);
    firmware::TransferRun run(job, firmware, view, direction, options);
    result = RunTransfer(run);
    std::string outcomes;
    for (const firmware::PortFacts& port : result.ports)
      outcomes += std::to_string(static_cast<int>(port.outcome));
    return outcomes + " " + std::to_string(result.statistics.blocks) + " " +
           std::to_string(static_cast<int>(result.outcome.failure));
  }

  std::vector<simulator::SimulatedPort*> simulated;
  firmware::Firmware firmware;
  NotedView view;
  firmware::TransferResult result;
};

}  // namespace zep::testing
