#include "cli/data_report.h"

#include <map>

#include "cli/identity_report.h"
#include "link/record_text.h"
#include "services/hex_text.h"
#include "services/messages.h"

namespace zep::cli {
namespace {

using radiodb::DataFile;
using radiodb::DataFileCheck;
using radiodb::DataFileLine;
using services::NLSFmt;
using services::NLSText;
using services::Table;

bool IsRecord(std::string_view line) { return line.size() >= 8 && services::IsHexText(line); }

std::string KindName(const services::Session& session, const DataFileCheck& check) {
  if (check.identity && check.identity->is_calibration) return NLSFmt(session, "calibration file");
  return check.networks > 1 ? NLSFmt(session, "multi-network data file")
                            : NLSFmt(session, "data file");
}

}  // namespace

std::vector<ItemSummary> SummariseItems(services::Session& session, const DataFile& file) {
  std::vector<ItemSummary> items;
  int network = 1;
  std::map<std::string, std::size_t> of_network;  // where the network's items are among all
  for (const DataFileLine& line : file.lines) {
    if (radiodb::IsNetworkSeparator(line.text)) {
      ++network;
      of_network.clear();
    }
    if (!IsRecord(line.text)) continue;
    const std::string item = line.text.substr(0, 2);
    const auto [at, is_new] = of_network.try_emplace(item, items.size());
    if (is_new) items.push_back({.item = item, .network = network, .records = {}});
    ItemSummary& summary = items[at->second];
    summary.bytes += static_cast<int>(link::GetRecordData(session, line.text).size() / 2);
    summary.records.push_back(&line);
  }
  return items;
}

std::string FileTypeName(const services::Session& session, const radiodb::FileIdentity& identity) {
  const auto model = radiodb::FindRadioModel(identity.model_code);
  return model ? NLSFmt(session, TypeName(model->type)) : std::string();
}

Table FileIdentityTable(const services::Session& session, const DataFile& file,
                        const DataFileCheck& check) {
  Table table;
  const auto row = [&](std::string_view title, const std::string& value) {
    if (!value.empty()) table.AddRow({NLSFmt(session, title), value});
  };
  row(NLSText("File"), file.path);
  row(NLSText("Kind"), KindName(session, check));
  for (const std::string& line : file.header) {
    if (line.starts_with("Saved with")) row(NLSText("Header"), line);
  }
  if (const auto& identity = check.identity) {
    row(NLSText("Model"),
        ModelName(session, identity->model_code) + " (" + identity->model_code + ")");
    row(NLSText("Model string"), identity->model_string);
    row(NLSText("Type"), FileTypeName(session, *identity));
    row(NLSText("Database version"), identity->database_version);
    row(NLSText("Hardware version"), identity->hardware_version);
    row(NLSText("Serial number"), NLSFmt(session, identity->serial_number));
  }
  row(NLSText("Networks"), std::to_string(check.networks));
  row(NLSText("Records"), std::to_string(check.records));
  return table;
}

Json FileIdentityJson(const services::Session& session, const DataFile& file,
                      const DataFileCheck& check) {
  Json json;
  json.Set("file", file.path);
  json.Set("size", file.size);
  json.Set("header", Json::List(file.header));
  if (const auto& identity = check.identity) {
    json.Set("calibration", identity->is_calibration);
    json.Set("model_code", identity->model_code);
    json.Set("model", radiodb::FindRadioModel(identity->model_code)
                          ? ModelName(session, identity->model_code)
                          : "");
    json.Set("model_string", identity->model_string);
    json.Set("database_version", identity->database_version);
    json.Set("hardware_version", identity->hardware_version);
    json.Set("serial_number", identity->serial_number);
  }
  json.Set("networks", check.networks);
  json.Set("records", check.records);
  return json;
}

Json FindingsJson(const DataFileCheck& check) {
  Json json = Json::List();
  for (const radiodb::Finding& finding : check.findings)
    json.Add(Json().Set("line", finding.line).Set("text", finding.text));
  return json;
}

}  // namespace zep::cli
