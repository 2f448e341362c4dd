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
      records.push_back(Json{{"line", record->number}, {"record", record->Text()}});
    json.push_back(Json{{"item", item.item},
                        {"network", item.network},
                        {"bytes", item.bytes},
                        {"records", std::move(records)}});
  }
  return json;
}

ExitStatus Show(CommandContext& context, const std::string& name) {
  const tl::expected<radiodb::DataFile, services::Problem> file = radiodb::ReadDataFile(name);
  if (!file) return context.WorkStatus(TellRefusal(context.session, file.error()));
  const std::vector<ItemSummary> items = SummariseItems(*file);
  context.Print(FileIdentityTable(context.session, *file).Text() + "\n" +
                ItemTable(context.session, items));
  if (context.options.json) {
    context.json["data"] = FileIdentityJson(context.session, *file);
    context.json["items"] = ItemsJson(items);
  }
  const std::vector<radiodb::Finding> findings = file->Findings();
  if (findings.empty()) return ExitStatus::kDone;
  context.user.Say(NLSFmt(context.session,
                          "%0:s has faults (%1:s). \"zepctl data check\" shows them.",
                          {name, std::to_string(findings.size())}));
  return ExitStatus::kFile;
}

}  // namespace

Action DeclareDataShow(Arguments& arguments) {
  auto file = std::make_shared<std::string>();
  arguments.AddWord("FILE", *file, NLSText("data file (.ops, .omn) or calibration file (.ocs)"));
  return [file](CommandContext& context) { return Show(context, *file); };
}

}  // namespace zep::cli
