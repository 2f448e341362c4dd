#include "cli/command.h"
#include "cli/identity_report.h"
#include "radiodb/read_write_radio.h"
#include "services/messages.h"

namespace zep::cli {
namespace {

ExitStatus Identify(CommandContext& context) {
  link::Link* link = context.LinkForOneRadio(link::Transfer::kRead);
  if (link == nullptr) return context.LinkStatus();
  link::Job job(*link);
  context.progress.SetText(services::NLSFmt(context.session, "Reading Radio"));
  radiodb::LastRadio radio;
  radiodb::RadioDb db(job, radio);
  const services::Outcome outcome = ReadSpecification(db);
  context.progress.EndPhase();
  if (outcome.Done()) {
    context.Print(IdentityTable(context.session, db.identity).Text());
    context.json["radio"] = IdentityJson(db.identity);
  }
  return context.JobStatus(outcome);
}

}  // namespace

Action DeclareIdentify(Arguments&) { return Identify; }

}  // namespace zep::cli
