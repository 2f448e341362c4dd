
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

ExitStatus Check(Program& program, const std::string& name) {
  const std::optional<radiodb::DataFile> file = radiodb::ReadDataFile(program.session, name);
  if (!file) return program.JobStatus(false);
  const radiodb::DataFileCheck check = CheckDataFile(program.session, *file);
  std::string text;
  for (const radiodb::Finding& finding : check.findings)
    text += FindingText(program.session, finding) + "\n";
  program.Print(text + Summary(program.session, *file, check) + "\n");
  if (program.options.json) {
    program.json.Set("data", FileIdentityJson(program.session, *file, check));
    program.json.Set("findings", FindingsJson(check));
  }
  return check.findings.empty() ? ExitStatus::kDone : ExitStatus::kFile;
}

}  // namespace

Action DeclareDataCheck(Arguments& arguments) {
  auto file = std::make_shared<std::string>();
  arguments.AddWord("FILE", *file, NLSText("data file (.ops, .omn) or calibration file (.ocs)"));
  return [file](Program& program) { return Check(program, *file); };
}

}  // namespace zep::cli
