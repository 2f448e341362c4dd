// The personality database with which a radio leaves the factory.
#pragma once

#include <cstdint>
#include <string>

#include "simulator/personality.h"
#include "simulator/radio_profile.h"

namespace zep::simulator {

// The item that tells model and versions.
inline constexpr std::uint8_t kIdentityItem = 0x00;

// A database of realistic size, laid out as the profile's database and calibration versions ask,
// and always the same for the same profile.
Personality MakePersonality(const RadioProfile& profile);

// The calibration item: "2C", on a trunked radio "47".
std::uint8_t CalibrationItem(const RadioProfile& profile);

// The data of the identity item "00", in the profile's format.
std::string IdentityText(const RadioProfile& profile);

}  // namespace zep::simulator
