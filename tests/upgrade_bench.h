// A simulated radio with everything that its upgrade needs, and what became of it.
#pragma once

#include <functional>
#include <regex>
#include <sstream>
#include <string>

#include "radiodb/read_write_radio.h"
#include "simulator/samples.h"
#include "tests/firmware_testing.h"
#include "tests/upgrade_testing.h"
#include "upgrade/automatic_upgrade.h"
#include "upgrade/manual_upgrade.h"

namespace zep::upgrade {

inline constexpr const char* kDataFile = "database/10000125v0400.ops";
inline constexpr const char* kCalibrationFile = "calibration/10000125v0100.ocs";
inline const std::string kBothFiles = std::string(kDataFile) + " and " + kCalibrationFile;

struct WatchedUpgrade final : UpgradeView {
  void ShowFirmwareFile(const std::string& full_name) override { firmware_file = full_name; }
  void ShowStatus(const std::string& status) override { on_step(status); }
  radiodb::ReadWriteView& ReadWriteWindow() override { return quiet; }
  firmware::TransferView& TransferWindow() override { return quiet; }
  void ShowCancelWaits() override {}
  void WatchTransfer(services::RunningJob* transfer) override {
    watched = transfer;
    if (transfer != nullptr) on_step("transfer");
  }

  testing::QuietView quiet;
  std::string firmware_file;
  services::RunningJob* watched = nullptr;
  std::function<void(const std::string&)> on_step = [](const std::string&) {};
};

// A radio that can be upgraded, with all files for it.
struct UpgradeBench : testing::FirmwareBench {
  explicit UpgradeBench(const std::string& options = "", const std::string& orders = "") {
    Simulate("torvik" + options);
    folder.Write("family.strings", "base ZEP\n100 Torvik\n");
    strings = services::StringTable("family", folder.Path());
    settings.AppSaveUserSetting(services::AppType::kDownload, "DefaultDataPath", folder.Path());
    folder.Write("default.ops", simulator::DataFileText(radio().Profile()));
    Do("image PP11PhaseI.bin 11 0126 0405 0103;" + orders);
  }

  // "image NAME MODEL FIRMWARE DATABASE CALIBRATION; write NAME TEXT; remove NAME; yes QUESTION;
  // no QUESTION; inactive"
  void Do(const std::string& orders) {
    std::istringstream all(orders);
    for (std::string order; std::getline(all, order, ';');) {
      std::istringstream words(order);
      std::string what, name, rest;
      std::getline(words >> what >> name >> std::ws, rest);
      if (what == "image") {
        simulator::ImageOptions options;
        options.micro = simulator::Micro::kA1;
        std::istringstream(rest) >> options.model_code >> options.versions.firmware >>
            options.versions.database >> options.versions.calibration;
        folder.Write(name, image = simulator::MakeFirmwareImage(options));
        firmware::ChooseImageFile(firmware.image, folder.Path(name));
      }
      if (what == "write") folder.Write(name, rest);
      if (what == "remove") std::filesystem::remove(folder.Path(name));
      if (what == "yes") user.WillAnswer(name + " " + rest, services::Answer::kYes);
      if (what == "no") user.WillAnswer(name + " " + rest, services::Answer::kNo);
      if (what == "inactive") link.State(1) = link::PortState::kAvailable;
    }
  }

  // "succeeded", "up to date", "failed", "comms error" or "aborted", and the number of the failure.
  std::string Upgrade() {
    constexpr const char* kNames[] = {"succeeded", "up to date", "failed", "comms error",
                                      "aborted"};
    AutomaticUpgrade upgrade(Work());
    const std::string outcome = kNames[static_cast<int>(upgrade.Upgrade())];
    return outcome + " " + std::to_string(static_cast<int>(upgrade.Cause().failure));
  }
  // Either upgrade; of the manual one the number of the failure alone.
  std::string Upgrade(bool automatic) {
    if (automatic) return Upgrade();
    return std::to_string(static_cast<int>(RunManualUpgrade(Work(), {}).failure));
  }
  // Reads the radio's data and calibration into their files.
  void Read() {
    db.transfer_kind = radiodb::TransferKind::kBoth;
    EXPECT_TRUE(ReadRadio(db, view).Done());
  }
  UpgradeWork Work() { return {link, firmware, last_radio, upgrade_view}; }
  // The log without times, "|" at the end of each line, and boxes; both without the test's folder.
  std::string Log() const {
    const std::string lines = folder.Read("upgrade.log").value_or("");
    return std::regex_replace(Bare(std::regex_replace(lines, std::regex(".{19}  (.*)"), "$1")),
                              std::regex("\n"), "|");
  }
  std::string Boxes() const { return Bare(user.Boxes()); }
  std::string Bare(const std::string& text) const { return folder.Renamed(text); }
  simulator::SimulatedRadio& radio() { return simulated[0]->Radio(); }
  simulator::Item& Factory(std::uint8_t item, int network = 1) {
    return const_cast<simulator::Item&>(*radio().Data().Find(network, item));
  }
  const simulator::Bytes& Item(std::uint8_t item, int network = 1) {
    return radio().Data().Find(network, item)->data;
  }
  std::string Contents() {
    std::string contents;
    for (const std::uint8_t item : radio().Data().List(1))
      contents += simulator::HexText(Item(item)) + "\n";
    return contents;
  }
  bool Flashed() { return radio().FlashMatches(image); }
  bool Note() const { return folder.Read("upgrade/10000125v0400.ops.unfinished").has_value(); }
  bool Saved() const {
    const std::string lines = folder.Read("upgrade.log").value_or("");
    return lines.find("Personality data saved as: ") != std::string::npos;
  }
  bool Started() const { return Log().find("|Starting firmware download") != std::string::npos; }

  simulator::Bytes image;
  WatchedUpgrade upgrade_view;
  radiodb::LastRadio last_radio;
  radiodb::RadioDb db{job, last_radio};
};

}  // namespace zep::upgrade
