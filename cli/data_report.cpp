#include "cli/data_report.h"

#include <map>

#include "cli/identity_report.h"
#include "cli/json_words.h"
#include "services/hex_text.h"
#include "services/messages.h"

namespace zep::cli {
namespace {

using radiodb::DataFile;
using radiodb::DataFileLine;
using services::NLSFmt;
using services::NLSText;
using services::Table;

bool IsRecord(std::string_view line) { return line.size() >= 8 && services::IsHexText(line); }

DataFileKind KindOf(const DataFile& file) {
  if (file.IsCalibration()) return DataFileKind::kCalibration;
  return file.Networks() > 1 ? DataFileKind::kMultiNetworkData : DataFileKind::kData;
}

std::string_view KindName(DataFileKind kind) {
  switch (kind) {
    case DataFileKind::kData:
      return NLSText("data file");
    case DataFileKind::kMultiNetworkData:
      return NLSText("multi-network data file");
    case DataFileKind::kCalibration:
      return NLSText("calibration file");
  }
  return {};
}

}  // namespace

std::vector<ItemSummary> SummariseItems(const DataFile& file) {
  std::vector<ItemSummary> items;
  int network = 1;
  std::map<std::string, std::size_t> of_network;  // where the network's items are among all
  for (const DataFileLine& line : file.Lines()) {
    if (line.IsSeparator()) {
      ++network;
      of_network.clear();
    }
    if (!IsRecord(line.Text())) continue;
    const std::string item(line.Text().substr(0, 2));
    const auto [at, is_new] = of_network.try_emplace(item, items.size());
    if (is_new) items.push_back({.item = item, .network = network, .records = {}});
    ItemSummary& summary = items[at->second];
    summary.bytes += static_cast<int>(radiodb::GetRecordData(line.Text()).size() / 2);
    summary.records.push_back(&line);
  }
  return items;
}

std::string FileTypeName(const services::Session& session, const radiodb::FileIdentity& identity) {
  const auto model = radiodb::FindRadioModel(identity.model_code);
  return model ? NLSFmt(session, TypeName(model->type)) : std::string();
}

Table FileIdentityTable(const services::Session& session, const DataFile& file) {
  Table table;
  const auto row = [&](std::string_view title, const std::string& value) {
    if (!value.empty()) table.AddRow({NLSFmt(session, title), value});
  };
  row(NLSText("File"), file.Path());
  row(NLSText("Kind"), NLSFmt(session, KindName(KindOf(file))));
  for (const std::string& line : file.Header()) {
    if (line.starts_with("Saved with")) row(NLSText("Header"), line);
  }
  if (const auto& identity = file.Identity()) {
    row(NLSText("Model"),
        ModelName(session, identity->model_code) + " (" + identity->model_code + ")");
    row(NLSText("Model string"), identity->model_string);
    row(NLSText("Type"), FileTypeName(session, *identity));
    row(NLSText("Database version"), identity->database_version);
    row(NLSText("Hardware version"), identity->hardware_version);
    row(NLSText("Serial number"), NLSFmt(session, identity->serial_number));
  }
  row(NLSText("Networks"), std::to_string(file.Networks()));
  row(NLSText("Records"), std::to_string(file.Records()));
  return table;
}

Json FileIdentityJson(const services::Session& session, const DataFile& file) {
  Json json = {{"file", file.Path()},
               {"kind", JsonWord(KindOf(file))},
               {"size", file.Size()},
               {"header", file.Header()}};
  if (const auto& identity = file.Identity()) {
    const bool is_known = radiodb::FindRadioModel(identity->model_code).has_value();
    json["model_code"] = identity->model_code;
    json["model"] = is_known ? ModelName(session, identity->model_code) : "";
    json["model_string"] = identity->model_string;
    json["database_version"] = identity->database_version;
    json["hardware_version"] = identity->hardware_version;
    json["serial_number"] = identity->serial_number;
  }
  json["networks"] = file.Networks();
  json["records"] = file.Records();
  return json;
}

Json FindingsJson(const services::Session& session, const std::vector<radiodb::Finding>& findings) {
  Json json = Json::array();
  for (const radiodb::Finding& finding : findings)
    json.push_back(Json{{"line", finding.line}, {"text", NLSFmt(session, finding.text)}});
  return json;
}

}  // namespace zep::cli
