#include "simulator/radio_text.h"

#include <algorithm>
#include <array>
#include <optional>

#include "simulator/numbers.h"

namespace zep::simulator {

namespace {

// Sets what the option asks for. Returns false when the value is none that it takes; then the
// option's form is shown.
using SetOption = bool (*)(RadioProfile& profile, std::string_view value);

struct RadioOption {
  std::string_view name;
  std::string_view value;
  std::string_view meaning;
  SetOption set;
};

bool SetModel(RadioProfile& profile, std::string_view value) {
  profile.model_code = value;
  return IsModelCode(value);
}

bool SetMicro(RadioProfile& profile, std::string_view value) {
  profile.micro = value == "A1" ? Micro::kA1 : Micro::kE1;
  return value == "A1" || value == "E1";
}

bool SetFlash(RadioProfile& profile, std::string_view value) {
  for (const FlashDevice& device : FlashDevices()) {
    if (device.name != value) continue;
    profile.flash = device;
    return true;
  }
  return false;
}

// Versions as the radio reports them: four characters, "0402" or "4.02".
bool SetVersion(std::string& version, std::string_view value) {
  version = value;
  return value.size() == 4 && VersionNumber(value) > 0;
}

bool SetHardware(RadioProfile& profile, std::string_view value) {
  profile.hardware = value;
  return value.size() == 4;
}

bool SetItem0(RadioProfile& profile, std::string_view value) {
  profile.item_0_format = Decimal(value).value_or(0);
  return value == "48" || value == "58" || value == "66";
}

bool SetNetworks(RadioProfile& profile, std::string_view value) {
  profile.networks = Decimal(value).value_or(0);
  return profile.networks >= 1 && profile.networks <= 4;
}

// Serial numbers as people read them; the radio holds what is above ten million in three bytes.
constexpr int kFirstSerialNumber = 10'000'000;
constexpr int kLastSerialNumber = kFirstSerialNumber + 0xFFFFFE;

bool SetSerial(RadioProfile& profile, std::string_view value) {
  profile.serial_number.reset();
  if (value == "none") return true;
  const int number = Decimal(value).value_or(0);
  if (number < kFirstSerialNumber || number > kLastSerialNumber) return false;
  profile.serial_number = static_cast<std::uint32_t>(number - kFirstSerialNumber);
  return true;
}

bool SetByteOrNone(std::optional<std::uint8_t>& target, std::string_view value) {
  target = ByteFromHex(value);
  return target || value == "none";
}

bool SetBandwidth(RadioProfile& profile, std::string_view value) {
  if (value.size() != 1) return false;
  profile.bandwidth = value[0];
  return true;
}

bool SetDynamicBytes(RadioProfile& profile, std::string_view value) {
  const std::optional<int> bytes = Decimal(value);
  profile.dynamic_bytes = static_cast<std::size_t>(bytes.value_or(0));
  return bytes.has_value();
}

bool SetWornItem(RadioProfile& profile, std::string_view value) {
  profile.worn_item = ByteFromHex(value);
  return profile.worn_item.has_value();
}

constexpr auto kRadioOptions = std::to_array<RadioOption>({
    {"old", "", "first generation: firmware 0125, database 0400, A1 micro, 1 Mbit flash",
     [](RadioProfile& p, std::string_view) { return MakeOld(p), true; }},
    {"model", "NN", "model code: 11 12 21 22 31 41 42 43 51 52 61 62 63 71 81", SetModel},
    {"micro", "A1|E1", "microprocessor family", SetMicro},
    {"flash", "NAME", "AT29C010A, AT29C020, SST29EE020, SST29SF020, unnamed or unknown", SetFlash},
    {"firmware", "NNNN", "firmware version, as 0303",
     [](RadioProfile& p, std::string_view v) { return SetVersion(p.versions.firmware, v); }},
    {"database", "NNNN", "personality database version, as 0402 or 4.02",
     [](RadioProfile& p, std::string_view v) { return SetVersion(p.versions.database, v); }},
    {"calibration", "NNNN", "calibration database version, 0100 to 0103",
     [](RadioProfile& p, std::string_view v) { return SetVersion(p.versions.calibration, v); }},
    {"hardware", "NNNN", "hardware version, four characters", SetHardware},
    {"item0", "48|58|66", "length of the identity item in hexadecimal characters", SetItem0},
    {"networks", "1..4", "networks of a trunked radio", SetNetworks},
    {"serial", "NUMBER|none", "serial number from 10000000 on, or a blank item", SetSerial},
    {"band", "HH|none", "band and compliance byte in hexadecimal, or a blank item",
     [](RadioProfile& p, std::string_view v) { return SetByteOrNone(p.band, v); }},
    {"bandwidth", "C", "bandwidth character, 1 or 2 in a good radio", SetBandwidth},
    {"config", "HH|none", "configuration byte sent after the first loader, or none",
     [](RadioProfile& p, std::string_view v) { return SetByteOrNone(p.config_byte, v); }},
    {"room", "BYTES", "room for channels and scan groups, per network", SetDynamicBytes},
    {"worn", "HH", "an item that can no longer be written", SetWornItem},
    {"x31", "", "the radio has a model configuration error",
     [](RadioProfile& p, std::string_view) { return p.model_error = true; }},
    {"x32", "", "the radio's database is corrupted until it is programmed",
     [](RadioProfile& p, std::string_view) { return p.corrupt = true; }},
    {"manual", "", "somebody has to put the radio into bootstrap mode and switch it on",
     [](RadioProfile& p, std::string_view) { return p.manual = true; }},
    {"paced", "", "bytes take their time on the line",
     [](RadioProfile& p, std::string_view) { return p.paced = true; }},
    {"unpaced", "", "bytes arrive at once",
     [](RadioProfile& p, std::string_view) { return !(p.paced = false); }},
    {"fault", "FAULT", "something that goes wrong, as silent@block:100; may be repeated", nullptr},
});

// Cuts the text up to the next comma off the front.
std::string_view TakeField(std::string_view& text) {
  const std::size_t comma = text.find(',');
  const std::string_view field = text.substr(0, comma);
  text.remove_prefix(comma == std::string_view::npos ? text.size() : comma + 1);
  return field;
}

template <typename Rows>
std::string NamesOf(const Rows& rows) {
  std::string names;
  for (const auto& row : rows) names += (names.empty() ? "" : ", ") + std::string(row.name);
  return names;
}

std::string Quoted(std::string_view text) { return "\"" + std::string(text) + "\""; }

// Applies one option. Returns what is wrong with it, or nothing.
std::string ApplyOption(RadioProfile& profile, std::string_view field) {
  const std::size_t equals = field.find('=');
  const std::string_view name = field.substr(0, equals);
  const bool has_value = equals != std::string_view::npos;
  const std::string_view value = has_value ? field.substr(equals + 1) : std::string_view{};

  const auto option = std::find_if(kRadioOptions.begin(), kRadioOptions.end(),
                                   [&](const RadioOption& row) { return row.name == name; });
  if (option == kRadioOptions.end()) {
    return Quoted(field) +
           " is no option of a simulated radio. There are: " + NamesOf(kRadioOptions) + ".";
  }
  if (option->set == nullptr) {
    Parsed<Fault> fault = ParseFault(value);
    if (fault.value) profile.faults.push_back(std::move(*fault.value));
    return fault.error;
  }
  if (has_value == option->value.empty() || !option->set(profile, value)) {
    std::string form(option->name);
    if (!option->value.empty()) form += "=" + std::string(option->value);
    return Quoted(field) + " is not understood. Write " + form + ": " +
           std::string(option->meaning) + ".";
  }
  return {};
}

}  // namespace

Parsed<RadioProfile> ParseRadio(std::string_view text) {
  if (text.starts_with(kSimulatedPrefix)) text.remove_prefix(kSimulatedPrefix.size());
  const std::string_view name = TakeField(text);
  const auto known = KnownRadios();
  const auto radio = std::find_if(known.begin(), known.end(),
                                  [&](const KnownRadio& row) { return row.name == name; });
  if (radio == known.end()) {
    return {{}, Quoted(name) + " is no simulated radio. There are: " + NamesOf(known) + "."};
  }
  RadioProfile profile = radio->profile();
  while (!text.empty()) {
    std::string error = ApplyOption(profile, TakeField(text));
    if (!error.empty()) return {{}, std::move(error)};
  }
  if (!profile.IsTrunked()) {
    if (profile.networks > 1) return {{}, "Only a trunked radio has more than one network."};
    profile.networks = 1;
  }
  return {std::move(profile), {}};
}

std::vector<RadioOptionHelp> RadioOptions() {
  std::vector<RadioOptionHelp> rows;
  rows.reserve(kRadioOptions.size());
  for (const RadioOption& option : kRadioOptions)
    rows.push_back({option.name, option.value, option.meaning});
  return rows;
}

}  // namespace zep::simulator
