#include "simulator/simulated_radio.h"

#include "simulator/factory_personality.h"
#include "simulator/firmware_image.h"

namespace zep::simulator {

namespace {

constexpr int kSlow = 1200;
constexpr int kFast = 9600;

// What the flash holds when the radio comes from the factory.
Bytes FactoryImage(const RadioProfile& profile) {
  return MakeFirmwareImage(
      {profile.model_code, profile.micro, profile.flash.size, profile.versions});
}

}  // namespace

SimulatedRadio::SimulatedRadio(RadioProfile profile)
    : profile_(std::move(profile)),
      personality_(MakePersonality(profile_)),
      flash_(profile_.flash, FactoryImage(profile_)),
      voice_(profile_.faults, counts_),
      database_mode_(profile_, personality_, voice_, counts_),
      bootstrap_mode_(profile_.config_byte, voice_),
      loader_(profile_.micro, flash_, voice_, counts_) {
  database_mode_.Restart();
}

void SimulatedRadio::Receive(std::uint8_t byte, int baud, platform::Duration now) {
  if (voice_.IsSilent() || LineIsCut()) return;
  Advance(now);
  if (!profile_.manual) {
    if (CallsForBootstrap(byte, baud, now)) PutIntoBootstrapMode();
    if (GreetsStuckRadio(byte, baud)) SwitchOffAndOn();
  }
  if (baud != Baud()) return;
  switch (mode_) {
    case Mode::kDatabase:
      return database_mode_.Receive(byte);
    case Mode::kBootstrap:
      return bootstrap_mode_.Receive(byte, now);
    case Mode::kLoader:
      loader_.Receive(byte);
      if (loader_.HasFinished()) EndLoader();
      return;
    case Mode::kOff:
      return;
  }
}

void SimulatedRadio::Advance(platform::Duration now) {
  const std::optional<platform::Duration> next = NextWakeUp();
  if (next && *next <= now) StartLoader();
}

std::optional<platform::Duration> SimulatedRadio::NextWakeUp() const {
  if (mode_ != Mode::kBootstrap || voice_.IsSilent()) return std::nullopt;
  return bootstrap_mode_.LoaderStarts();
}

bool SimulatedRadio::CallsForBootstrap(std::uint8_t byte, int baud, platform::Duration now) const {
  if (byte != 0xFF || baud != kSlow) return false;
  return mode_ != Mode::kBootstrap || bootstrap_mode_.AwaitsNewStart(now);
}

bool SimulatedRadio::GreetsStuckRadio(std::uint8_t byte, int baud) const {
  if (byte != '^' || baud != kFast) return false;
  return (mode_ == Mode::kBootstrap && bootstrap_mode_.IsBetweenLoaders()) ||
         (mode_ == Mode::kLoader && loader_.IsBetweenRows());
}

void SimulatedRadio::PutIntoBootstrapMode() {
  bootstrap_mode_.Restart();
  Enter(Mode::kBootstrap);
}

void SimulatedRadio::SwitchOffAndOn() {
  const Versions before = profile_.versions;
  profile_.versions = FindVersions(flash_.Contents()).value_or(before);
  Personality factory = MakePersonality(profile_);
  if (profile_.versions.database != before.database) {
    personality_ = std::move(factory);
  } else {
    personality_.TakeOver(factory, kIdentityItem);
    if (profile_.versions.calibration != before.calibration) {
      personality_.TakeOver(factory, CalibrationItem(profile_));
    }
  }
  ++counts_.restarts;
  database_mode_.Restart();
  Enter(Mode::kDatabase);
}

void SimulatedRadio::StartLoader() {
  if (bootstrap_mode_.IsDamaged()) return voice_.FallSilent();
  Enter(Mode::kLoader);
  loader_.Start();
}

// Radios of model 31 switch off, and a technician has to switch them on again.
void SimulatedRadio::EndLoader() {
  if (profile_.manual && profile_.model_code == "31") {
    Enter(Mode::kOff);
  } else {
    SwitchOffAndOn();
  }
}

void SimulatedRadio::Enter(Mode mode) {
  mode_ = mode;
  voice_.SetBaud(Baud());
}

}  // namespace zep::simulator
