#include "simulator/bootstrap_mode.h"

namespace zep::simulator {

namespace {

constexpr std::size_t kFirstLoaderSize = 256;
constexpr std::uint8_t kLeadingByte = 0xFF;

// Programs pause for a second behind the last byte, and for next to nothing between the bytes.
constexpr platform::Duration kEndOfLoader = std::chrono::milliseconds(500);
// A program that was stopped in the middle of a loader and begins anew does not do so sooner.
constexpr platform::Duration kLoadingGivenUp = std::chrono::seconds(1);

}  // namespace

void BootstrapMode::Restart() {
  stage_ = Stage::kWaiting;
  first_loader_.clear();
  second_loader_.clear();
  damaged_ = false;
}

bool BootstrapMode::AwaitsNewStart(platform::Duration now) const {
  return IsBetweenLoaders() || now - last_byte_ >= kLoadingGivenUp;
}

std::optional<platform::Duration> BootstrapMode::LoaderStarts() const {
  const bool complete =
      stage_ == Stage::kSecondLoader && !second_loader_.empty() && second_loader_.back() == 'E';
  if (!complete) return std::nullopt;
  return last_byte_ + kEndOfLoader;
}

void BootstrapMode::Receive(std::uint8_t byte, platform::Duration now) {
  last_byte_ = now;
  switch (stage_) {
    case Stage::kWaiting:
      if (Hear(Step::kBootstrap, byte) == kLeadingByte) stage_ = Stage::kFirstLoader;
      return;
    case Stage::kFirstLoader:
      return ReceiveFirstLoader(byte);
    case Stage::kSlow:
      if (byte == '0' && voice_.Hear(Step::kSpeed, byte) == '0') stage_ = Stage::kFast;
      return voice_.SetBaud(Baud());
    case Stage::kFast:
      if (byte == 'B' && Hear(Step::kLoader, byte) == 'B') stage_ = Stage::kSecondLoader;
      return;
    case Stage::kSecondLoader:
      return ReceiveSecondLoader(byte);
  }
}

void BootstrapMode::ReceiveFirstLoader(std::uint8_t byte) {
  const std::optional<std::uint8_t> heard = Hear(Step::kBootstrap, byte);
  if (!heard) return;
  first_loader_.push_back(*heard);
  if (first_loader_.size() < kFirstLoaderSize) return;
  stage_ = Stage::kSlow;
  if (damaged_) return voice_.FallSilent();
  if (config_byte_) voice_.Answer(Step::kConfig, std::string(1, static_cast<char>(*config_byte_)));
}

void BootstrapMode::ReceiveSecondLoader(std::uint8_t byte) {
  if (const std::optional<std::uint8_t> heard = Hear(Step::kLoader, byte)) {
    second_loader_.push_back(*heard);
  }
}

std::optional<std::uint8_t> BootstrapMode::Hear(Step step, std::uint8_t byte) {
  const std::optional<std::uint8_t> heard = voice_.Hear(step, byte);
  if (heard != byte) damaged_ = true;
  return heard;
}

}  // namespace zep::simulator
