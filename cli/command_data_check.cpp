#include "cli/command.h"
#include "cli/data_report.h"
#include "cli/identity_report.h"
#include "services/messages.h"

namespace zep::cli {
namespace {

using services::NLSFmt;
using services::NLSText;

// "a.ops: 214 records in 1 network(s), for ZEP 2200 (51), database version 0405."
std::string Summary(const services::Session& session, const radiodb::DataFile& file,
                    std::size_t faults) {
  std::string summary = NLSFmt(session, "%0:s: records: %1:s, networks: %2:s, faults: %3:s.",
                               {file.Path(), std::to_string(file.Records()),
                                std::to_string(file.Networks()), std::to_string(faults)});
  if (file.Identity()) {
    summary += " " + NLSFmt(session, "It is for %0:s.",
                            {ModelName(session, file.Identity()->model_code) + " (" +
                             file.Identity()->model_code + ")"});
  }
  return summary;
}

ExitStatus Check(CommandContext& context, const std::string& name) {
  const tl::expected<radiodb::DataFile, services::Problem> file = radiodb::ReadDataFile(name);
  if (!file) return context.WorkStatus(TellRefusal(context.session, file.error()));
  const std::vector<radiodb::Finding> findings = file->Findings();
  std::string text;
  for (const radiodb::Finding& finding : findings)
    text += NLSFmt(context.session, FindingText(finding)) + "\n";
  context.Print(text + Summary(context.session, *file, findings.size()) + "\n");
  if (context.options.json) {
    context.json["data"] = FileIdentityJson(context.session, *file);
    context.json["findings"] = FindingsJson(context.session, findings);
  }
  return findings.empty() ? ExitStatus::kDone : ExitStatus::kFile;
}

}  // namespace

Action DeclareDataCheck(Arguments& arguments) {
  auto file = std::make_shared<std::string>();
  arguments.AddWord("FILE", *file, NLSText("data file (.ops, .omn) or calibration file (.ocs)"));
  return [file](CommandContext& context) { return Check(context, *file); };
}

}  // namespace zep::cli
