#include "simulator/radio_profile.h"

#include <algorithm>
#include <array>

namespace zep::simulator {

namespace {

constexpr std::array<std::string_view, 10> kConventionalCodes = {"11", "21", "31", "41", "43",
                                                                 "51", "61", "63", "71", "81"};
constexpr std::array<std::string_view, 5> kTrunkedCodes = {"12", "22", "42", "52", "62"};

template <typename Codes>
bool Contains(const Codes& codes, std::string_view code) {
  return std::find(codes.begin(), codes.end(), code) != codes.end();
}

RadioProfile Conventional() { return {}; }

RadioProfile Trunked() {
  RadioProfile profile;
  profile.model_code = "52";
  profile.networks = 3;
  profile.serial_number = 4711;
  profile.flash = FlashDevices()[3];
  return profile;
}

RadioProfile SecondGeneration() {
  RadioProfile profile;
  profile.model_code = "43";
  profile.versions = {"0327", "0402", "0102"};
  profile.serial_number = 43043;
  profile.band = 0xE8;
  profile.bandwidth = '2';
  profile.item_0_format = 58;
  return profile;
}

RadioProfile Model31() {
  RadioProfile profile;
  profile.model_code = "31";
  profile.versions = {"0303", "0400", "0101"};
  profile.serial_number = 31031;
  profile.item_0_format = 58;
  profile.micro = Micro::kA1;
  profile.flash = FlashDevices()[1];
  return profile;
}

RadioProfile Torvik() {
  RadioProfile profile;
  profile.serial_number = 125;
  MakeOld(profile);
  return profile;
}

constexpr std::array kKnownRadios = {
    KnownRadio{"conventional", "model 51, E1 micro, 2 Mbit flash, firmware 0335", Conventional},
    KnownRadio{"trunked", "model 52 with three networks, E1 micro, 2 Mbit flash", Trunked},
    KnownRadio{"conventional2", "model 43, second generation, firmware 0327", SecondGeneration},
    KnownRadio{"model31", "model 31, A1 micro, 2 Mbit flash, firmware 0303", Model31},
    KnownRadio{"torvik", "model 11, A1 micro, 1 Mbit flash, firmware 0125, to be upgraded", Torvik},
};

}  // namespace

bool RadioProfile::IsTrunked() const { return Contains(kTrunkedCodes, model_code); }

bool IsModelCode(std::string_view code) {
  return Contains(kConventionalCodes, code) || Contains(kTrunkedCodes, code);
}

std::span<const KnownRadio> KnownRadios() { return kKnownRadios; }

void MakeOld(RadioProfile& profile) {
  profile.model_code = profile.IsTrunked() ? "12" : "11";
  profile.versions = {"0125", "0400", "0100"};
  profile.item_0_format = 48;
  profile.micro = Micro::kA1;
  profile.flash = FlashDevices()[0];
}

}  // namespace zep::simulator
