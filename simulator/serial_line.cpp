#include "simulator/serial_line.h"

#include <algorithm>

namespace zep::simulator {

namespace {

constexpr int kBitsPerByte = 10;  // start bit, eight data bits, stop bit

}  // namespace

platform::Duration SerialLine::ByteTime(int baud) const {
  if (!paced_ || baud == 0) return {};
  return platform::Duration(std::chrono::seconds(kBitsPerByte)) / baud;
}

void SerialLine::Send(std::span<const std::uint8_t> bytes, platform::Duration now) {
  for (const std::uint8_t byte : bytes) {
    last_to_radio_ = std::max(last_to_radio_, now) + ByteTime(program_baud_);
    to_radio_.push_back({byte, program_baud_, last_to_radio_, false});
  }
}

void SerialLine::Advance(platform::Duration now) {
  while (!IsCut()) {
    const bool byte_is_due = !to_radio_.empty() && to_radio_.front().due <= now;
    const std::optional<platform::Duration> wake_up = radio_.NextWakeUp();
    if (wake_up && *wake_up <= now && (!byte_is_due || *wake_up < to_radio_.front().due)) {
      radio_.Advance(*wake_up);
      QueueAnswers(*wake_up);
    } else if (byte_is_due) {
      const WireByte byte = to_radio_.front();
      to_radio_.pop_front();
      DeliverToRadio(byte);
    } else {
      break;
    }
  }
  while (!to_program_.empty() && to_program_.front().due <= now) {
    DeliverToProgram(to_program_.front());
    to_program_.pop_front();
  }
}

void SerialLine::DeliverToRadio(const WireByte& byte) {
  if (listener_) listener_(byte);
  radio_.Receive(byte.value, byte.baud == 0 ? radio_.Baud() : byte.baud, byte.due);
  QueueAnswers(byte.due);
}

void SerialLine::QueueAnswers(platform::Duration now) {
  if (!radio_.HasAnswers()) return;
  for (const Utterance& said : radio_.TakeAnswers()) {
    last_to_program_ = std::max(last_to_program_, now + said.delay);
    for (const char byte : said.bytes) {
      last_to_program_ += ByteTime(said.baud);
      to_program_.push_back({static_cast<std::uint8_t>(byte), said.baud, last_to_program_, true});
    }
  }
}

void SerialLine::DeliverToProgram(const WireByte& byte) {
  if (listener_) listener_(byte);
  if (program_baud_ == 0 || byte.baud == program_baud_) input_.push_back(byte.value);
}

void SerialLine::Mend() {
  radio_.MendLine();
  to_radio_.clear();
  to_program_.clear();
  input_.clear();
}

std::optional<platform::Duration> SerialLine::NextEvent() const {
  std::optional<platform::Duration> next = radio_.NextWakeUp();
  const auto consider = [&next](const std::deque<WireByte>& bytes) {
    if (!bytes.empty()) next = std::min(next.value_or(bytes.front().due), bytes.front().due);
  };
  consider(to_radio_);
  consider(to_program_);
  return IsCut() ? std::nullopt : next;
}

}  // namespace zep::simulator
