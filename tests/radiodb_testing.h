// Radios for the tests of the radio database: a small one on a scripted port, whose every word is
// in the test, and simulated ones.
#pragma once

#include <algorithm>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>

#include "radiodb/read_write_radio.h"
#include "services/hex_text.h"
#include "simulator/simulated_port.h"
#include "tests/link_testing.h"

namespace zep::testing {

// Notes what is shown: "[caption] status max=3 1 2 3".
class RecordedView final : public radiodb::ReadWriteView {
 public:
  void SetCaption(const std::string& caption) override { Note("[" + caption + "]"); }
  void ShowStatus(const std::string& status) override { Note(status); }
  void SetProgressMaximum(int maximum) override { Note("max=" + std::to_string(maximum)); }
  void SetProgress(int value) override { Note(std::to_string(value)); }
  std::string shown;

 private:
  void Note(const std::string& text) { shown += (shown.empty() ? "" : " ") + text; }
};

// A radio on port 1, the only Active one, and what is done with it.
struct RadioBench : TestLink {
  RadioBench() { link.State(1) = link::PortState::kActive; }
  bool Read(radiodb::TransferKind kind) {
    db.transfer_kind = kind;
    return ReadRadio(db, view);
  }
  RecordedView view;
  radiodb::RadioDb db{link};
};

struct SimulatedBench : RadioBench {
  explicit SimulatedBench(const std::string& radio) {
    auto made = simulator::MakeSimulatedPort("sim:" + radio, clock);
    simulated = made.value->get();
    link.ports[0] = std::move(*made.value);
  }
  simulator::SimulatedPort* simulated;
};

// A radio of model 51 (conventional) or of model 12 with two networks (trunked).
struct ScriptedRadio : RadioBench {
  ScriptedRadio() : ScriptedRadio("ZEP-H15100335,02010405,010301") {}
  explicit ScriptedRadio(std::string_view item_0) {
    std::istringstream answers(
        "^ v # > d01| > d02| > b| > e| > r2A| 2A000648310000000057|> r27| 270003000001D5|> "
        "r3C| 3C000103C0|> r40| 400006E83200000000A0|> r3D| 3D000300126747|> l| 000401152832|> "
        "r01| 0100020102FA|01010103FA|> r15| 150000EB|> r2C| 2C0002AABB6D|> r32| 32000111BC|> "
        "r33| 33000122AA|> r47| 47000247115F|>");
    for (std::string command, answer; answers >> command >> answer;) Answer(command, answer);
    const std::string record = "00001D" + services::ConTextToHex(item_0);
    Answer("r00|", record + services::CalcHexChecksum(session, record) + "|>");
  }

  // In commands and answers "|" is a carriage return.
  void Answer(std::string command, std::string answer) {
    for (std::string* text : {&command, &answer}) std::ranges::replace(*text, '|', '\r');
    port(1).Answer(command, answer);
  }
  // How it ended, all that was sent to the radio, and what the user was told. The test's folder is
  // left out.
  std::string Told(bool done) {
    const std::string wire = Wire();
    std::string told = done ? "done " : "failure " + std::to_string(int(session.failure)) + " ";
    for (std::size_t at = wire.find("1<"); at != std::string::npos; at = wire.find("1<", at + 2)) {
      const std::string byte = wire.substr(at + 2, wire.find(' ', at) - at - 2);
      told += byte == "0D" ? "|" : byte;
    }
    told += "\n" + user.TakeBoxes();
    const std::string path = folder.Path("");
    for (std::size_t at = told.find(path); at != std::string::npos; at = told.find(path))
      told.erase(at, path.size());
    return told;
  }
};

}  // namespace zep::testing
