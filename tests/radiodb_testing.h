// A small radio on a scripted port, for the tests of the radio database: its every word is in the
// test.
#pragma once

#include <algorithm>
#include <sstream>
#include <string>
#include <string_view>

#include "radiodb/read_write_radio.h"
#include "services/hex_text.h"
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

inline constexpr std::string_view kConventional = "ZEP-??51?0335,02010405,010301";
inline constexpr std::string_view kTrunked = "ZEP-H11200335,02010405,010301";  // two networks

struct ScriptedRadio : TestLink {
  // item_0: the text of its item 0. answers: commands and what they are answered with, in place of
  // what it would say otherwise; "|" is a carriage return, "-" is silence.
  explicit ScriptedRadio(std::string_view item_0 = kConventional, const std::string& answers = "") {
    Choose(1);
    const std::string record = "00001D" + services::ConTextToHex(item_0);
    std::istringstream words(
        "^ v # >noise d01| > d02| > b| > e| > r2A| 2A000648310000000057|> r27| 270003000001D5|> "
        "r3C| 3C000103C0|> r40| 400006E83200000000A0|> r3D| 3D000300126747|> l| 000401152832|> "
        "r01| 0100020102FA?|01010103FA|> r15| 150000EB|> r2C| 2C0002AABB6D|> r32| 32000111BC|> "
        "r33| 33000122AA|> r47| 47000247115F|> w0100020102FA| > w01010103FA| > w2C0002AABB6D| > "
        "w32000111BC| > w47000247115F| > w0000115A45502D4831353130303430353032303138| > "
        "w0000115A45502D483231324C30343035303230311E| > r00| " +
        record + services::CalcHexChecksum(session, record) + "|> " + answers);
    for (std::string command, answer; words >> command >> answer;) {
      if (answer == "-") answer.clear();
      for (std::string* text : {&command, &answer})
        std::replace(text->begin(), text->end(), '|', '\r');
      port(1).Answer(command, answer);
    }
  }

  // How it ended, all that was sent to the radio, and what the user was told, without the test's
  // folder.
  std::string Told(const services::Outcome& outcome) {
    const std::string wire = Wire();
    std::string told =
        outcome.Done() ? "done " : "failure " + std::to_string(int(outcome.failure)) + " ";
    for (std::size_t at = wire.find("1<"); at != std::string::npos; at = wire.find("1<", at + 2)) {
      const std::string byte = wire.substr(at + 2, wire.find(' ', at) - at - 2);
      told += byte == "0D" ? "|" : byte;
    }
    return folder.Renamed(told + "\n" + user.TakeBoxes());
  }
  std::string Read(radiodb::TransferKind kind) {
    db.transfer_kind = kind;
    return Told(ReadRadio(db, view));
  }
  std::string Program(radiodb::TransferKind kind, const std::string& contents) {
    db.transfer_kind = kind;
    return Told(ProgramRadio(db, view, folder.Write("a.ops", contents)));
  }

  RecordedView view;
  radiodb::LastRadio radio;
  radiodb::RadioDb db{job, radio};
};

}  // namespace zep::testing
