#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include "cli/command.h"
#include "cli/data_report.h"
#include "services/messages.h"

namespace zep::cli {
namespace {

using services::NLSFmt;
using services::NLSText;

std::string ItemTable(const services::Session& session, const std::vector<ItemSummary>& items) {
  constexpr auto kRight = Table::Align::kRight;
  Table table({NLSFmt(session, "Item"), NLSFmt(session, "Network"), NLSFmt(session, "Records"),
               NLSFmt(session, "Bytes")},
              {Table::Align::kLeft, kRight, kRight, kRight});
  for (const ItemSummary& item : items) {
    table.AddRow({item.item, std::to_string(item.network), std::to_string(item.records.size()),
                  std::to_string(item.bytes)});
  }
  return table.Text();
}

nlohmann::ordered_json ItemsJson(const std::vector<ItemSummary>& items) {
  nlohmann::ordered_json json = nlohmann::ordered_json::array();
  for (const ItemSummary& item : items) {
    nlohmann::ordered_json records = nlohmann::ordered_json::array();
    for (const radiodb::DataFileLine* record : item.records)
      records.push_back({{"line", record->number}, {"record", record->text}});
    json.push_back({{"item", item.item},
                    {"network", item.network},
                    {"bytes", item.bytes},
                    {"records", std::move(records)}});
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
    program.Json()["data"] = FileIdentityJson(program.session, *file, check);
    program.Json()["items"] = ItemsJson(items);
  }
  if (check.findings.empty()) return ExitStatus::kDone;
  program.user.Say(NLSFmt(program.session,
                          "%0:s has faults (%1:s). \"zepctl data check\" shows them.",
                          {name, std::to_string(check.findings.size())}));
  return ExitStatus::kFile;
}

}  // namespace

Action DeclareDataShow(CLI::App& app) {
  auto file = std::make_shared<std::string>();
  app.add_option("FILE", *file,
                 std::string(NLSText("data file (.ops, .omn) or calibration file (.ocs)")))
      ->required();
  return [file](Program& program) { return Show(program, *file); };
}

}  // namespace zep::cli
