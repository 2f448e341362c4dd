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
                    const radiodb::DataFileCheck& check) {
  std::string summary =
      NLSFmt(session, "%0:s: records: %1:s, networks: %2:s, faults: %3:s.",
             {file.path, std::to_string(check.records), std::to_string(check.networks),
              std::to_string(check.findings.size())});
  if (check.identity) {
    summary += " " + NLSFmt(session, "It is for %0:s.",
                            {ModelName(session, check.identity->model_code) + " (" +
                             check.identity->model_code + ")"});
  }
  return summary;
}

ExitStatus Check(CommandContext& context, const std::string& name) {
  const std::optional<radiodb::DataFile> file = radiodb::ReadDataFile(context.session, name);
  if (!file) return context.JobStatus(false);
  const radiodb::DataFileCheck check = CheckDataFile(context.session, *file);
  std::string text;
  for (const radiodb::Finding& finding : check.findings)
    text += FindingText(context.session, finding) + "\n";
  context.Print(text + Summary(context.session, *file, check) + "\n");
  if (context.options.json) {
    context.json["data"] = FileIdentityJson(context.session, *file, check);
    context.json["findings"] = FindingsJson(check);
  }
  return check.findings.empty() ? ExitStatus::kDone : ExitStatus::kFile;
}

}  // namespace

Action DeclareDataCheck(Arguments& arguments) {
  auto file = std::make_shared<std::string>();
  arguments.AddWord("FILE", *file, NLSText("data file (.ops, .omn) or calibration file (.ocs)"));
  return [file](CommandContext& context) { return Check(context, *file); };
}

}  // namespace zep::cli
