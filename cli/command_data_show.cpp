#include "cli/command.h"
#include "cli/data_report.h"
#include "services/messages.h"

namespace zep::cli {
namespace {

using services::NLSFmt;
using services::NLSText;
using services::Table;

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
  Json json = Json::array();
  for (const ItemSummary& item : items) {
    Json records = Json::array();
    for (const radiodb::DataFileLine* record : item.records)
      records.push_back(Json{{"line", record->number}, {"record", record->text}});
    json.push_back(Json{{"item", item.item},
                        {"network", item.network},
                        {"bytes", item.bytes},
                        {"records", std::move(records)}});
  }
  return json;
}

ExitStatus Show(CommandContext& context, const std::string& name) {
  const std::optional<radiodb::DataFile> file = radiodb::ReadDataFile(context.session, name);
  if (!file) return context.JobStatus(false);
  const radiodb::DataFileCheck check = CheckDataFile(context.session, *file);
  const std::vector<ItemSummary> items = SummariseItems(context.session, *file);
  context.Print(FileIdentityTable(context.session, *file, check).Text() + "\n" +
                ItemTable(context.session, items));
  if (context.options.json) {
    context.json["data"] = FileIdentityJson(context.session, *file, check);
    context.json["items"] = ItemsJson(items);
  }
  if (check.findings.empty()) return ExitStatus::kDone;
  context.user.Say(NLSFmt(context.session,
                          "%0:s has faults (%1:s). \"zepctl data check\" shows them.",
                          {name, std::to_string(check.findings.size())}));
  return ExitStatus::kFile;
}

}  // namespace

Action DeclareDataShow(Arguments& arguments) {
  auto file = std::make_shared<std::string>();
  arguments.AddWord("FILE", *file, NLSText("data file (.ops, .omn) or calibration file (.ocs)"));
  return [file](CommandContext& context) { return Show(context, *file); };
}

}  // namespace zep::cli
