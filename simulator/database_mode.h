// The radio in its ordinary life at 9600 baud: the handshake and the database command set.
//
//   "^"  -> "v"                ends whatever was going on
//   "#"  -> ">"                enters the command set; commands end with a carriage return
//   "l"  -> the item list, one line of 2 + 2 + 2n + 2 digits for every 32 items, then ">"
//   "r"  item  -> the item's records, each followed by a carriage return, then ">"
//   "d0" network, "b", "w" record, "e"  -> ">"
//
// A command that fails is answered with "{Cnn}" and the prompt. Nothing is echoed.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "simulator/personality.h"
#include "simulator/radio_profile.h"
#include "simulator/voice.h"

namespace zep::simulator {

class DatabaseMode {
 public:
  DatabaseMode(const RadioProfile& profile, Personality& personality, Voice& voice,
               RadioCounts& counts)
      : profile_(profile),
        personality_(personality),
        voice_(voice),
        counts_(counts),
        corrupt_(profile.corrupt) {}

  // Back to the state after switching on.
  void Restart();
  void Receive(std::uint8_t byte);

 private:
  void Caret();
  void Prompt();
  void Execute(std::string_view command);
  std::string List();
  std::string Read(std::string_view item);
  std::string SelectNetwork(std::string_view number);
  std::string Begin();
  std::string Write(std::string_view record);
  std::string End();

  // The code of what is wrong with the record, empty when it was stored.
  std::string_view WriteRecord(std::string_view record);
  std::string_view CheckIdentity(const Bytes& data) const;
  std::string_view Store(std::uint8_t number, std::uint8_t counter, const Bytes& data);
  // The code of what is wrong with what was written since "b", empty when all is well.
  std::string_view CheckWrittenItems() const;

  const RadioProfile& profile_;
  Personality& personality_;
  Voice& voice_;
  RadioCounts& counts_;

  bool corrupt_;  // until a database is programmed
  bool in_command_set_ = false;
  bool writing_ = false;  // between "b" and "e"
  int network_ = 1;
  std::string line_;
  std::map<std::uint8_t, std::size_t> written_;  // records of each item since "b"
};

}  // namespace zep::simulator
