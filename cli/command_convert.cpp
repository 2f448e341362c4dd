#include <algorithm>

#include "cli/command.h"
#include "cli/difference_report.h"
#include "platform/files.h"
#include "services/hex_text.h"
#include "services/messages.h"
#include "services/paths.h"
#include "upgrade/data_conversion.h"

namespace zep::cli {
namespace {

using services::Failure;
using services::NLSFmt;
using services::NLSText;

struct ConvertOptions {
  std::string saved_file;
  std::string converted_file;
  std::string from;
  std::string to;
  std::string default_file;
  bool dry_run = false;
};

// Two versions as numbers: 402 is 4.02.
struct Versions {
  int from = 0;
  int to = 0;
};

// As a radio reports it: "0402".
std::string FourDigits(int version) {
  return services::PadString(std::to_string(version), services::PadSide::kLeft, 4, "0");
}

// Digits, with a point among them or not.
bool IsVersion(std::string_view text) {
  return std::count(text.begin(), text.end(), '.') <= 1 &&
         text.find_first_not_of("0123456789.") == std::string_view::npos;
}

// The versions that were typed; from_file stands in for a first one that was not. Nothing when one
// is no version; the user has been told.
std::optional<Versions> TypedVersions(CommandContext& context, const ConvertOptions& options,
                                      int from_file) {
  const bool are_versions = IsVersion(options.from) && IsVersion(options.to);
  const Versions versions{options.from.empty() ? from_file : radiodb::VersionNumber(options.from),
                          radiodb::VersionNumber(options.to)};
  if (are_versions && versions.from > 0 && versions.to > 0) return versions;
  context.UsageError(NLSFmt(context.session,
                            "Please give the versions as in \"--from 402 --to 405\"; 4.02 and 0402 "
                            "are the same."));
  return std::nullopt;
}

// For a text that names the file.
Failure RefuseName(CommandContext& context, std::string_view text, const std::string& file,
                   Failure why = Failure::kRefused) {
  return TellRefusal(context.session, NLSFmt(context.session, text, {file}), why);
}

// Why OUT is not to be written; kNone when it may be.
Failure HindranceToWrite(CommandContext& context, const ConvertOptions& options) {
  if (platform::IsSameFile(options.saved_file, options.converted_file)) {
    return RefuseName(context,
                      NLSText("%0:s is the file to convert and stays as it is. Please give the new "
                              "file another name."),
                      options.saved_file);
  }
  if (!options.default_file.empty() &&
      platform::IsSameFile(options.default_file, options.converted_file)) {
    return RefuseName(
        context,
        NLSText("%0:s holds the default settings and stays as it is. Please give the new "
                "file another name."),
        options.default_file);
  }
  const std::string folder = services::FolderOf(platform::AbsolutePath(options.converted_file));
  if (!options.dry_run && !platform::IsFolder(folder)) {
    return RefuseName(
        context, NLSText("There is no folder %0:s. Please make the folder, or choose another one."),
        folder, Failure::kFile);
  }
  const bool may_write =
      options.dry_run || services::MayWriteFile(context.session, options.converted_file);
  return may_write ? Failure::kNone : Failure::kRefused;
}

// Writes OUT, of which a copy stays when it held something else.
Failure WriteFile(CommandContext& context, const ConvertOptions& options,
                  const radiodb::DataFile& file, std::string_view procedure) {
  if (options.dry_run) return Failure::kNone;
  const auto former = WriteDataFile(file, procedure);
  return former ? Failure::kNone : TellRefusal(context.session, former.error());
}

ExitStatus Finish(CommandContext& context, const ConvertOptions& options, const Versions& versions,
                  const std::vector<conversion::Change>& changes) {
  services::Session& session = context.session;
  context.json["from"] = versions.from;
  context.json["to"] = versions.to;
  if (options.dry_run) {
    context.Print(ChangeText(session, changes));
    context.Print(NLSFmt(session, "Nothing was written.") + "\n");
    context.json["changes"] = ChangeJson(changes);
    return ExitStatus::kDone;
  }
  context.Print(NLSFmt(session, "%0:s is converted from version %1:s to %2:s: %3:s.",
                       {options.saved_file, std::to_string(versions.from),
                        std::to_string(versions.to), options.converted_file}) +
                "\n");
  context.json["file"] = options.converted_file;
  return ExitStatus::kDone;
}

// What was found in the data. It stands in the log, too, unless this is a trial run.
void ShowRemarks(CommandContext& context, const std::vector<conversion::Remark>& remarks) {
  Json& json = context.json["remarks"] = Json::array();
  for (const conversion::Remark& remark : remarks) {
    const std::string text = NLSFmt(context.session, remark.text);
    context.user.Say(text);
    json.push_back(text);
  }
}

// Whether the file is of that version, or is to be taken for it.
bool IsOfVersion(services::Session& session, const ConvertOptions& options,
                 const radiodb::FileIdentity& identity, int from) {
  const int in_file = radiodb::VersionNumber(identity.database_version);
  if (in_file == from) return true;
  const std::string question =
      NLSFmt(session,
             "The file %0:s is of database version %1:s, not %2:s. Convert it as if it were of "
             "version %2:s?",
             {options.saved_file, std::to_string(in_file), std::to_string(from)});
  return NLSMsgBox(session, question,
                   {.icon = services::Icon::kQuestion, .buttons = services::Buttons::kYesNo}) ==
         services::Answer::kYes;
}

// There are no steps back: older versions know less, but nothing is taken out of the data.
bool MayGoBack(services::Session& session, const Versions& versions) {
  // A version that is too old for any conversion is told of there.
  if (versions.to >= versions.from || versions.to < conversion::kOldestDatabase) return true;
  const std::string question = NLSFmt(
      session,
      "Personality data cannot be converted back from version %0:s to %1:s: only the version "
      "in it would change. Write it nevertheless?",
      {std::to_string(versions.from), std::to_string(versions.to)});
  return NLSMsgBox(session, question,
                   {.icon = services::Icon::kQuestion,
                    .buttons = services::Buttons::kYesNo,
                    .cautious = true}) == services::Answer::kYes;
}

ExitStatus ConvertPersonality(CommandContext& context, const ConvertOptions& options) {
  services::Session& session = context.session;
  const upgrade::Expected<radiodb::DataFile> file =
      upgrade::ReadCheckedDataFile(session, options.saved_file);
  if (!file) return context.WorkStatus(file.error());
  const std::optional<radiodb::FileIdentity>& identity = file->Identity();
  if (identity && identity->is_calibration) {
    return context.WorkStatus(
        RefuseName(context,
                   NLSText("The file %0:s holds calibration data. Please convert it with "
                           "\"convert calibration\"."),
                   options.saved_file));
  }
  const std::optional<Versions> versions = TypedVersions(
      context, options, identity ? radiodb::VersionNumber(identity->database_version) : 0);
  if (!versions) return ExitStatus::kUsage;
  if (identity && !IsOfVersion(session, options, *identity, versions->from))
    return context.WorkStatus(Failure::kRefused);
  if (!MayGoBack(session, *versions)) return context.WorkStatus(Failure::kRefused);
  if (const Failure why = HindranceToWrite(context, options); why != Failure::kNone)
    return context.WorkStatus(why);

  upgrade::UpgradeLog log(session, options.dry_run ? "" : upgrade::UpgradeLogFile(session));
  const upgrade::Expected<upgrade::ConvertedPersonality> converted =
      ConvertPersonalityData(session, log,
                             {.old_version = FourDigits(versions->from),
                              .new_version = FourDigits(versions->to),
                              .saved = *file,
                              .converted_file = platform::AbsolutePath(options.converted_file),
                              .default_file = platform::AbsolutePath(options.default_file),
                              .collect_changes = options.dry_run});
  if (!converted) return context.WorkStatus(converted.error());
  if (const Failure why = WriteFile(context, options, converted->file, "WriteDatabase");
      why != Failure::kNone) {
    log.Log("Could not write " + converted->file.Path());
    return context.WorkStatus(why);
  }
  ShowRemarks(context, converted->remarks);
  return Finish(context, options, *versions, converted->changes);
}

ExitStatus ConvertCalibration(CommandContext& context, const ConvertOptions& options) {
  services::Session& session = context.session;
  const upgrade::Expected<radiodb::DataFile> file =
      upgrade::ReadCheckedDataFile(session, options.saved_file);
  if (!file) return context.WorkStatus(file.error());
  const std::optional<radiodb::FileIdentity>& identity = file->Identity();
  if (identity && !identity->is_calibration) {
    return context.WorkStatus(
        RefuseName(context,
                   NLSText("The file %0:s holds personality data. Please convert it with "
                           "\"convert personality\"."),
                   options.saved_file));
  }
  const std::optional<Versions> versions = TypedVersions(
      context, options, conversion::CalibrationVersionOf(conversion::CalibrationDataOf(*file)));
  if (!versions) return ExitStatus::kUsage;
  if (const Failure why = HindranceToWrite(context, options); why != Failure::kNone)
    return context.WorkStatus(why);

  const upgrade::Expected<conversion::CalibrationResult> converted =
      upgrade::ConvertCalibrationFile(session,
                                      {.old_version = versions->from,
                                       .new_version = versions->to,
                                       .path = platform::AbsolutePath(options.converted_file),
                                       .collect_changes = options.dry_run},
                                      *file);
  if (!converted) return context.WorkStatus(converted.error());
  if (const Failure why = WriteFile(context, options, converted->file, "ConvertCalibrationFile");
      why != Failure::kNone) {
    return context.WorkStatus(why);
  }
  return Finish(context, options, *versions, converted->changes);
}

std::shared_ptr<ConvertOptions> DeclareOptions(Arguments& arguments) {
  auto options = std::make_shared<ConvertOptions>();
  arguments.AddWord("IN", options->saved_file, NLSText("file to convert; it stays as it is"));
  arguments.AddWord("OUT", options->converted_file, NLSText("file to make"));
  arguments.AddOption("--from", "VERSION", options->from,
                      NLSText("the version that IN has; without it, what IN tells"));
  arguments.AddOption("--to", "VERSION", options->to, NLSText("the version that OUT gets"));
  arguments.AddFlag("--dry-run", options->dry_run,
                    NLSText("show what would change, and why, and write nothing"));
  return options;
}

}  // namespace

Action DeclareConvertPersonality(Arguments& arguments) {
  auto options = DeclareOptions(arguments);
  arguments.AddOption("--defaults", "FILE", options->default_file,
                      NLSText("the default settings, which give the values that are new; without "
                              "it, default.ops of the programming application"));
  arguments.AddRemark(
      NLSText("Database versions are 205 to 405, as \"--from 402 --to 405\". Each step leaves a "
              "line in upgrade.log."));
  return [options](CommandContext& context) { return ConvertPersonality(context, *options); };
}

Action DeclareConvertCalibration(Arguments& arguments) {
  auto options = DeclareOptions(arguments);
  arguments.AddRemark(NLSText("Calibration versions are 100 to 103, up or down."));
  return [options](CommandContext& context) { return ConvertCalibration(context, *options); };
}

}  // namespace zep::cli
