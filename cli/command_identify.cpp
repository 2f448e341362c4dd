
#include "cli/command.h"
#include "cli/identity_report.h"
#include "radiodb/read_write_radio.h"
#include "services/messages.h"

namespace zep::cli {
namespace {

ExitStatus Identify(Program& program) {
  link::Link* link = program.LinkForOneRadio(services::Transfer::kRead);
  if (link == nullptr) return program.JobStatus(false);
  const link::Job job(*link);
  program.progress.SetText(services::NLSFmt(program.session, "Reading Radio"));
  radiodb::RadioDb db(*link);
  const bool done = ReadSpecification(db);
  program.progress.EndPhase();
  if (done) {
    program.Print(IdentityTable(program.session, db.identity).Text());
    program.json.Set("radio", IdentityJson(db.identity));
  }
  return program.JobStatus(done);
}

}  // namespace

Action DeclareIdentify(Arguments&) { return Identify; }

}  // namespace zep::cli
