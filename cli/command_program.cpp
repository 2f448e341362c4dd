#include "cli/command.h"
#include "cli/displays.h"
#include "cli/identity_report.h"
#include "radiodb/read_write_radio.h"
#include "services/messages.h"

namespace zep::cli {
namespace {

using services::NLSText;

ExitStatus ProgramFile(CommandContext& context, const std::string& name) {
  // A file that cannot be read is no reason to trouble a radio.
  const tl::expected<radiodb::DataFile, services::Problem> file = radiodb::ReadDataFile(name);
  if (!file) return context.WorkStatus(TellRefusal(context.session, file.error()));

  link::Link* link = context.LinkForOneRadio(link::Transfer::kProgram);
  if (link == nullptr) return context.LinkStatus();
  link::Job job(*link);
  radiodb::LastRadio radio;
  radiodb::RadioDb db(job, radio);
  db.transfer_kind = TransferKindOf(*file);
  services::Outcome outcome;
  {
    ReadWriteDisplay display(context);
    outcome = ProgramRadio(db, display, *file);
  }
  if (!outcome.Done()) return context.JobStatus(outcome);
  context.Print(ProgrammedText(db, name) + "\n");
  context.json["radio"] = IdentityJson(db.identity);
  context.json["data_file"] = name;
  return context.JobStatus(outcome);
}

}  // namespace

Action DeclareProgram(Arguments& arguments) {
  auto file = std::make_shared<std::string>();
  arguments.AddWord("FILE", *file, NLSText("data file (.ops, .omn) or calibration file (.ocs)"));
  return [file](CommandContext& context) { return ProgramFile(context, *file); };
}

}  // namespace zep::cli
