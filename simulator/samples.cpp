#include "simulator/samples.h"

#include <array>

#include "platform/files.h"
#include "simulator/factory_personality.h"

namespace zep::simulator {

namespace {

constexpr std::size_t kModelStringLength = 9;

// The images of the upgrade families bear the names that an automatic upgrade asks for.
constexpr std::array kSampleImages = {
    SampleImage{"model11-a1-1mbit.bin", "11", Micro::kA1, kMegabit, "0126"},
    SampleImage{"model12-a1-1mbit.bin", "12", Micro::kA1, kMegabit, "0126"},
    SampleImage{"model31-a1-2mbit.bin", "31", Micro::kA1, 2 * kMegabit, "0317"},
    SampleImage{"model43-e1-2mbit.bin", "43", Micro::kE1, 2 * kMegabit, "0336"},
    SampleImage{"model51-e1-1mbit.bin", "51", Micro::kE1, kMegabit, "0336"},
    SampleImage{"model51-e1-2mbit.bin", "51", Micro::kE1, 2 * kMegabit, "0336"},
    SampleImage{"model52-e1-1mbit.bin", "52", Micro::kE1, kMegabit, "0336"},
    SampleImage{"model52-e1-2mbit.bin", "52", Micro::kE1, 2 * kMegabit, "0336"},
    SampleImage{"PP11PhaseI.bin", "11", Micro::kA1, kMegabit, "0126"},
    SampleImage{"PP11PhaseII.bin", "11", Micro::kA1, kMegabit, "0317"},
    SampleImage{"PP11PhaseIII.bin", "11", Micro::kA1, kMegabit, "0334"},
    SampleImage{"PP21PhaseI.bin", "21", Micro::kA1, kMegabit, "0126"},
    SampleImage{"PP21PhaseII.bin", "21", Micro::kA1, kMegabit, "0317"},
    SampleImage{"PP21PhaseIII.bin", "21", Micro::kA1, kMegabit, "0334"},
    SampleImage{"PP31PhaseI.bin", "31", Micro::kA1, kMegabit, "0126"},
    SampleImage{"PP31PhaseII.bin", "31", Micro::kA1, kMegabit, "0317"},
    SampleImage{"PP31PhaseIII.bin", "31", Micro::kA1, kMegabit, "0334"},
    SampleImage{"QPP31CNV.BIN", "31", Micro::kA1, kMegabit, "0317"},
    SampleImage{"QOP43CNV.BIN", "43", Micro::kE1, kMegabit, "0335"},
    SampleImage{"QOP63CNV.BIN", "63", Micro::kE1, kMegabit, "0335"},
};

// Every byte value in turn, so that those that mean something elsewhere ("E", 0x00, 0xFF) are among
// them.
Bytes CountingBytes(std::size_t count, unsigned step) {
  Bytes bytes;
  for (std::size_t at = 0; at < count; ++at) bytes.push_back(static_cast<std::uint8_t>(at * step));
  return bytes;
}

std::string Line(std::string text) { return text.append("\r\n"); }

std::string Header(std::string_view title_lines) {
  return Line("***") + std::string(title_lines) +
         Line("Saved with the ZEP Download and Configuration Application Version 1.0.0") +
         Line("###") + Line("---");
}

// Who the radio is, as far as data files tell: model string, database version, hardware version.
std::string IdentityLine(const RadioProfile& profile) {
  std::string identity =
      IdentityText(profile).substr(0, kModelStringLength) + profile.versions.database;
  identity += profile.item_0_format == 48 ? "0000" : profile.hardware;
  // The longest format claims four bytes more than it has.
  Bytes record{kIdentityItem, 0x00,
               static_cast<std::uint8_t>(profile.item_0_format == 66 ? 0x15 : 0x11)};
  record.insert(record.end(), identity.begin(), identity.end());
  return TextWithChecksum(std::move(record));
}

// The beginning of the identity item, and the serial number.
std::string CalibrationIdentityLine(const RadioProfile& profile) {
  const std::size_t length = profile.item_0_format == 66 ? 0x20 : 0x1C;
  std::string identity = IdentityText(profile);
  if (profile.item_0_format == 48) identity.insert(13, ",0000");
  const std::uint8_t serial_number_item = profile.IsTrunked() ? 0x3D : 0x27;
  const Personality personality = MakePersonality(profile);
  const Bytes& serial_number = personality.common.at(serial_number_item).data;
  identity.resize(length - serial_number.size());
  return RecordText(0x00, 0x00, BytesOf(identity + TextOf(serial_number)));
}

std::string ItemLines(std::uint8_t number, const Item& item) {
  std::string lines;
  if (item.data.empty()) return lines;
  for (const std::string& record : RecordsOf(number, item)) lines += Line(record);
  return lines;
}

}  // namespace

Bytes SampleFirstLoader() { return CountingBytes(256, 1); }
Bytes SampleSecondLoader() { return CountingBytes(1632, 37); }

std::span<const SampleImage> SampleImages() { return kSampleImages; }

Bytes MakeSampleImage(const SampleImage& image) {
  return MakeFirmwareImage({std::string(image.model_code),
                            image.micro,
                            image.size,
                            {std::string(image.firmware), "0405", "0103"}});
}

std::string DataFileText(const RadioProfile& profile) {
  const bool several = profile.networks > 1;
  std::string title = Line(several ? "ZEP Multiple Network Data File" : "ZEP Data File");
  if (several) title += Line("Contains data for " + std::to_string(profile.networks) + " networks");

  std::string text = Header(title) + Line(IdentityLine(profile));
  const Personality personality = MakePersonality(profile);
  for (int network = 1; network <= profile.networks; ++network) {
    if (network > 1) text += Line("~~~");
    for (const std::uint8_t number : personality.List(network)) {
      const Item& item = *personality.Find(network, number);
      if (item.use == ItemUse::kReadOnly || number == CalibrationItem(profile)) continue;
      text += ItemLines(number, item);
    }
  }
  return text;
}

std::string CalibrationFileText(const RadioProfile& profile) {
  const std::uint8_t number = CalibrationItem(profile);
  const Personality personality = MakePersonality(profile);
  return Header("") + Line(CalibrationIdentityLine(profile)) +
         ItemLines(number, personality.common.at(number));
}

platform::SystemError WriteSamples(const std::string& folder) {
  platform::SystemError error = platform::MakeFolders(folder);
  const auto write = [&](std::string_view name, std::string_view contents) {
    if (!error) error = platform::WriteWholeFile(folder + "/" + std::string(name), contents);
  };
  write("bs.tsk", TextOf(SampleFirstLoader()));
  write("dl.tsk", TextOf(SampleSecondLoader()));
  for (const SampleImage& image : kSampleImages) write(image.name, TextOf(MakeSampleImage(image)));

  RadioProfile defaults;
  defaults.model_code = "11";
  defaults.serial_number = 0;
  write("default.ops", DataFileText(defaults));
  for (const KnownRadio& radio : KnownRadios()) {
    const RadioProfile profile = radio.profile();
    const std::string name(radio.name);
    write(name + (profile.networks > 1 ? ".omn" : ".ops"), DataFileText(profile));
    write(name + ".ocs", CalibrationFileText(profile));
  }
  return error;
}

}  // namespace zep::simulator
