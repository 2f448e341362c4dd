// The radio in bootstrap mode, run by the loader in its processor's ROM, which knows nothing of a
// database.
//
//   0xFF and 256 bytes at 1200 baud
//       the first loader, which may then send the configuration byte by itself
//   "0" at 1200 baud
//       from here on 9600 baud
//   "B", bytes, "E"
//       the second loader; it starts when nothing follows the "E" for half a second, because an
//       "E" may well stand inside it
//
// Nothing is echoed.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

#include "platform/clock.h"
#include "simulator/numbers.h"
#include "simulator/voice.h"

namespace zep::simulator {

class BootstrapMode {
 public:
  BootstrapMode(std::optional<std::uint8_t> config_byte, Voice& voice)
      : config_byte_(config_byte), voice_(voice) {}

  // The technician has put the radio into bootstrap mode.
  void Restart();
  void Receive(std::uint8_t byte, platform::Duration now);
  int Baud() const { return stage_ < Stage::kFast ? 1200 : 9600; }

  // Whether a first byte 0xFF would begin anew rather than be part of what is being loaded: at a
  // stage without data, or when the data has stopped coming.
  bool AwaitsNewStart(platform::Duration now) const;
  // Whether a byte that makes no sense would be noticed: neither loader is being received.
  bool IsBetweenLoaders() const {
    return stage_ != Stage::kFirstLoader && stage_ != Stage::kSecondLoader;
  }

  // When the second loader will have come to its end unless another byte comes; nothing while that
  // cannot be said.
  std::optional<platform::Duration> LoaderStarts() const;

  // A byte of a loader did not arrive as it was sent, so that it will not run.
  bool IsDamaged() const { return damaged_; }

 private:
  enum class Stage { kWaiting, kFirstLoader, kSlow, kFast, kSecondLoader };

  void ReceiveFirstLoader(std::uint8_t byte);
  void ReceiveSecondLoader(std::uint8_t byte);
  std::optional<std::uint8_t> Hear(Step step, std::uint8_t byte);

  std::optional<std::uint8_t> config_byte_;
  Voice& voice_;
  Stage stage_ = Stage::kWaiting;
  platform::Duration last_byte_{};
  Bytes first_loader_;
  Bytes second_loader_;
  bool damaged_ = false;
};

}  // namespace zep::simulator
