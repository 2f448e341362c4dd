// A simulated radio, written from the protocol alone: bytes go in, bytes come out, and a flash and
// a database change. It knows no ports and no clock; a SerialLine carries its bytes and its time.
//
// A technician is part of it, unless the profile says "manual": the radio is in bootstrap mode when
// a program calls for it with 0xFF at 1200 baud, and a radio left in its loader is switched off and
// on when a program greets it with "^".
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "platform/clock.h"
#include "simulator/bootstrap_mode.h"
#include "simulator/database_mode.h"
#include "simulator/flash.h"
#include "simulator/flash_loader.h"
#include "simulator/personality.h"
#include "simulator/radio_profile.h"
#include "simulator/voice.h"

namespace zep::simulator {

class SimulatedRadio {
 public:
  explicit SimulatedRadio(RadioProfile profile);
  SimulatedRadio(const SimulatedRadio&) = delete;
  SimulatedRadio& operator=(const SimulatedRadio&) = delete;

  // A byte has come in, sent at baud. At a speed that is not the radio's own it is noise.
  void Receive(std::uint8_t byte, int baud, platform::Duration now);
  // The speed at which it listens and talks.
  int Baud() const { return mode_ == Mode::kBootstrap ? bootstrap_mode_.Baud() : 9600; }
  // Does what the radio does by itself in the course of time, and says when that will be next.
  void Advance(platform::Duration now);
  std::optional<platform::Duration> NextWakeUp() const;

  // What the radio has sent since the last call.
  std::vector<Utterance> TakeAnswers() { return voice_.Take(); }
  bool HasAnswers() const { return voice_.HasSpoken(); }

  // A fault has cut the line, until it is mended.
  bool LineIsCut() const { return voice_.IsCut(); }
  void MendLine() { voice_.Mend(); }

  // What a technician does. Switched on, the radio runs what is in its flash: it reports the
  // versions found there, and where these ask for another layout its database and calibration are
  // as from the factory.
  void PutIntoBootstrapMode();
  void SwitchOffAndOn();

  // A look inside.
  const RadioProfile& Profile() const { return profile_; }
  const Personality& Data() const { return personality_; }
  const Flash& FlashMemory() const { return flash_; }
  bool FlashMatches(std::span<const std::uint8_t> image) const {
    return CompareFlash(flash_.Contents(), image, profile_.micro).IsEqual();
  }
  const BootstrapMode& Bootstrap() const { return bootstrap_mode_; }
  const DatabaseMode& Database() const { return database_mode_; }
  const RadioCounts& Counts() const { return counts_; }

 private:
  enum class Mode { kDatabase, kBootstrap, kLoader, kOff };

  void Enter(Mode mode);
  void EndLoader();
  bool CallsForBootstrap(std::uint8_t byte, int baud, platform::Duration now) const;
  bool GreetsStuckRadio(std::uint8_t byte, int baud) const;
  void StartLoader();

  RadioProfile profile_;
  RadioCounts counts_;
  Personality personality_;
  Flash flash_;
  Voice voice_;
  DatabaseMode database_mode_;
  BootstrapMode bootstrap_mode_;
  FlashLoader loader_;
  Mode mode_ = Mode::kDatabase;
};

}  // namespace zep::simulator
