
#include "cli/command.h"
#include "cli/displays.h"
#include "cli/identity_report.h"
#include "radiodb/read_write_radio.h"
#include "services/messages.h"

namespace zep::cli {
namespace {

using services::NLSText;

ExitStatus ProgramFile(Program& program, const std::string& name) {
  // A file that cannot be read is no reason to trouble a radio.
  const std::optional<radiodb::TransferKind> kind = radiodb::TransferKindOf(program.session, name);
  if (!kind) return program.JobStatus(false);

  link::Link* link = program.LinkForOneRadio(services::Transfer::kProgram);
  if (link == nullptr) return program.JobStatus(false);
  const link::Job job(*link);
  radiodb::RadioDb db(*link);
  db.transfer_kind = *kind;
  bool done = false;
  {
    ReadWriteDisplay display(program);
    done = ProgramRadio(db, display, name);
  }
  if (!done) return program.JobStatus(false);
  program.Print(ProgrammedText(db, name) + "\n");
  program.json.Set("radio", IdentityJson(db.identity));
  program.json.Set("data_file", name);
  return program.JobStatus(true);
}

}  // namespace

Action DeclareProgram(Arguments& arguments) {
  auto file = std::make_shared<std::string>();
  arguments.AddWord("FILE", *file, NLSText("data file (.ops, .omn) or calibration file (.ocs)"));
  return [file](Program& program) { return ProgramFile(program, *file); };
}

}  // namespace zep::cli
