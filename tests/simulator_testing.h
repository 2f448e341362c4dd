// A simulated radio on a table: what is said to it and what it answers, as text. A carriage return
// is written "|".
#pragma once

#include <algorithm>
#include <chrono>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "simulator/radio_text.h"
#include "simulator/simulated_radio.h"

namespace zep::testing {

inline simulator::RadioProfile ProfileOf(std::string_view radio) {
  simulator::Parsed<simulator::RadioProfile> parsed = simulator::ParseRadio(radio);
  EXPECT_EQ(parsed.error, "");
  return parsed.value.value_or(simulator::RadioProfile{});
}

struct RadioOnTable {
  explicit RadioOnTable(std::string_view text)
      : own(std::make_unique<simulator::SimulatedRadio>(ProfileOf(text))), radio(*own) {}
  explicit RadioOnTable(simulator::SimulatedRadio& another) : radio(another) {}

  // Says the text, a byte every millisecond, and returns the radio's answers.
  std::string Say(std::string text, int baud = 9600) {
    std::replace(text.begin(), text.end(), '|', '\r');
    for (const char letter : text) {
      now += std::chrono::milliseconds(1);
      radio.Receive(static_cast<std::uint8_t>(letter), baud, now);
    }
    std::string answers = Answers();
    std::replace(answers.begin(), answers.end(), '\r', '|');
    return answers;
  }
  std::string SayBytes(const simulator::Bytes& bytes, int baud = 9600) {
    for (const std::uint8_t byte : bytes) radio.Receive(byte, baud, now);
    return simulator::HexText(simulator::BytesOf(Answers()));
  }
  std::string Wait(std::chrono::milliseconds time) {
    now += time;
    radio.Advance(now);
    return simulator::HexText(simulator::BytesOf(Answers()));
  }

  // The records of an item; the radio must be in its command set.
  std::vector<std::string> Records(std::string_view item) {
    std::vector<std::string> records;
    std::string reply = Say("r" + std::string(item) + "|");
    while (reply.find('|') != std::string::npos) {
      records.push_back(reply.substr(0, reply.find('|')));
      reply.erase(0, reply.find('|') + 1);
    }
    EXPECT_EQ(reply, ">");
    return records;
  }
  std::string Answers() {
    std::string answers;
    for (const simulator::Utterance& said : radio.TakeAnswers()) answers += said.bytes;
    return answers;
  }

  std::unique_ptr<simulator::SimulatedRadio> own;
  simulator::SimulatedRadio& radio;
  platform::Duration now{};
};

}  // namespace zep::testing
