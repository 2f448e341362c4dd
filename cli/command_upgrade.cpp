#include "cli/command.h"
#include "cli/displays.h"
#include "cli/firmware_words.h"
#include "cli/identity_report.h"
#include "platform/files.h"
#include "services/messages.h"
#include "upgrade/automatic_upgrade.h"

namespace zep::cli {
namespace {

using services::NLSFmt;
using services::NLSText;
using upgrade::UpgradeOutcome;

// The upgrade's dialog and the windows of its steps: one display at a time.
class UpgradeDisplay final : public upgrade::UpgradeView {
 public:
  explicit UpgradeDisplay(CommandContext& context) : context_(context) {}

  void ShowFirmwareFile(const std::string&) override {}
  void ShowStatus(const std::string& status) override {
    EndStep();
    context_.progress.ShowLine(status);
  }
  void ShowCancelWaits() override {
    context_.user.Say(NLSFmt(context_.session,
                             "The upgrade ends when this download is complete. To end it at once, "
                             "please press Ctrl-C again."));
  }
  radiodb::ReadWriteView& ReadWriteWindow() override {
    EndStep();
    return read_write_.emplace(context_);
  }
  firmware::TransferView& TransferWindow() override {
    EndStep();
    return transfer_.emplace(context_);
  }
  void WatchTransfer(services::RunningJob* transfer) override {
    if (transfer == nullptr) EndStep();
  }

 private:
  void EndStep() {
    read_write_.reset();
    transfer_.reset();
  }

  CommandContext& context_;
  std::optional<ReadWriteDisplay> read_write_;
  std::optional<TransferDisplay> transfer_;
};

ExitStatus Upgrade(CommandContext& context, const upgrade::UpgradeFiles& files) {
  link::Link* link = context.LinkForOneRadio(link::Transfer::kProgram);
  if (link == nullptr) return context.LinkStatus();
  firmware::Firmware firmware;
  radiodb::LastRadio radio;
  UpgradeDisplay display(context);
  upgrade::AutomaticUpgrade upgrade(
      {*link, firmware, radio, display},
      {platform::AbsolutePath(files.image), platform::AbsolutePath(files.default_settings)});
  const UpgradeOutcome outcome = upgrade.Upgrade();

  context.json["outcome"] = JsonWord(outcome);
  if (!radio.identity.model_string.empty()) context.json["radio"] = IdentityJson(radio.identity);
  context.json["firmware_file"] = firmware.image.FullName();
  context.json["data_file"] = upgrade.Saved().data_file;
  context.json["calibration_file"] = upgrade.Saved().calibration_file;
  context.json["log"] = upgrade::UpgradeLogFile(context.session);
  if (outcome == UpgradeOutcome::kSucceeded) {
    context.Print(NLSFmt(context.session,
                         "Radio %0:s now has firmware %1:s, database %2:s and calibration %3:s. "
                         "Its former data is in %4:s and %5:s.",
                         {RadioName(radio.identity), radio.identity.software_version,
                          radio.identity.database_version, radio.identity.calibration_version,
                          upgrade.Saved().data_file, upgrade.Saved().calibration_file}) +
                  "\n");
  }
  return context.JobStatus(upgrade.Cause());
}

}  // namespace

Action DeclareUpgrade(Arguments& arguments) {
  auto files = std::make_shared<upgrade::UpgradeFiles>();
  arguments.AddOption("--image", "FILE", files->image,
                      NLSText("the firmware image; without it, the one that the radio needs from "
                              "the application folder"));
  arguments.AddOption("--defaults", "FILE", files->default_settings,
                      NLSText("the default settings, which give the values that are new; without "
                              "it, default.ops of the programming application"));
  arguments.AddRemark(
      NLSText("The string table, \"Vorn PMR II\" or Torvik, decides which firmware a radio needs. "
              "Each step leaves a line in upgrade.log in the application folder."));
  return [files](CommandContext& context) { return Upgrade(context, *files); };
}

}  // namespace zep::cli
