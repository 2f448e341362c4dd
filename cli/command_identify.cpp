#include "cli/command.h"
#include "cli/identity_report.h"
#include "radiodb/read_write_radio.h"
#include "services/messages.h"

namespace zep::cli {
namespace {

ExitStatus Identify(CommandContext& context) {
  link::Link* link = context.LinkForOneRadio(services::Transfer::kRead);
  if (link == nullptr) return context.JobStatus(false);
  const link::Job job(*link);
  context.progress.SetText(services::NLSFmt(context.session, "Reading Radio"));
  radiodb::RadioDb db(*link);
  const bool done = ReadSpecification(db);
  context.progress.EndPhase();
  if (done) {
    context.Print(IdentityTable(context.session, db.identity).Text());
    context.json["radio"] = IdentityJson(db.identity);
  }
  return context.JobStatus(done);
}

}  // namespace

Action DeclareIdentify(Arguments&) { return Identify; }

}  // namespace zep::cli
