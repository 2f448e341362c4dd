
#include "cli/command.h"
#include "cli/data_report.h"
#include "services/messages.h"

namespace zep::cli {
namespace {

using services::NLSFmt;
using services::NLSText;

std::string ItemTable(const services::Session& session, const std::vector<ItemSummary>& items) {
  using enum Table::Align;
  Table table({NLSFmt(session, "Item"), NLSFmt(session, "Network"), NLSFmt(session, "Records"),
               NLSFmt(session, "Bytes")},
              {kLeft, kRight, kRight, kRight});
  for (const ItemSummary& item : items) {
    table.AddRow({item.item, std::to_string(item.network), std::to_string(item.records.size()),
                  std::to_string(item.bytes)});
  }
  return table.Text();
}

Json ItemsJson(const std::vector<ItemSummary>& items) {
  Json json = Json::List();
  for (const ItemSummary& item : items) {
    Json records = Json::List();
    for (const radiodb::DataFileLine* record : item.records)
      records.Add(Json().Set("line", record->number).Set("record", record->text));
    json.Add(Json()
                 .Set("item", item.item)
                 .Set("network", item.network)
                 .Set("bytes", item.bytes)
                 .Set("records", std::move(records)));
  }
  return json;
}

ExitStatus Show(Program& program, const std::string& name) {
  const std::optional<radiodb::DataFile> file = radiodb::ReadDataFile(program.session, name);
  if (!file) return program.JobStatus(false);
  const radiodb::DataFileCheck check = CheckDataFile(program.session, *file);
  const std::vector<ItemSummary> items = SummariseItems(program.session, *file);
  program.Print(FileIdentityTable(program.session, *file, check).Text() + "\n" +
                ItemTable(program.session, items));
  if (program.options.json) {
    program.json.Set("data", FileIdentityJson(program.session, *file, check));
    program.json.Set("items", ItemsJson(items));
  }
  if (check.findings.empty()) return ExitStatus::kDone;
  program.user.Say(NLSFmt(program.session,
                          "%0:s has faults (%1:s). \"zepctl data check\" shows them.",
                          {name, std::to_string(check.findings.size())}));
  return ExitStatus::kFile;
}

}  // namespace

Action DeclareDataShow(Arguments& arguments) {
  auto file = std::make_shared<std::string>();
  arguments.AddWord("FILE", *file, NLSText("data file (.ops, .omn) or calibration file (.ocs)"));
  return [file](Program& program) { return Show(program, *file); };
}

}  // namespace zep::cli
