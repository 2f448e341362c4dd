#include "cli/difference_report.h"

#include "cli/json_words.h"
#include "radiodb/radio_models.h"
#include "services/hex_text.h"
#include "services/messages.h"

namespace zep::cli {
namespace {

using conversion::Change;
using conversion::ChangeReason;
using conversion::FactDifference;
using conversion::FileFact;
using conversion::ItemDifference;
using services::NLSFmt;
using services::NLSText;
using services::Session;
using services::Table;
using services::Text;

std::string Item(const ItemDifference& difference) {
  return services::ConBytNumToHex(static_cast<std::uint8_t>(difference.item));
}

// The first byte, behind the record's number in a table: "4", "12/7".
std::string Place(const ItemDifference& difference) {
  const std::string byte = std::to_string(difference.byte);
  return difference.record == 0 ? byte : std::to_string(difference.record) + "/" + byte;
}

std::string OrNothing(const std::string& bytes) { return bytes.empty() ? "-" : bytes; }

std::vector<std::string> Cells(const ItemDifference& difference) {
  return {std::to_string(difference.network), Item(difference), Place(difference),
          OrNothing(difference.before), OrNothing(difference.after)};
}

// "4.02"
std::string VersionText(int version) {
  return std::to_string(version / 100) + "." +
         services::PadString(std::to_string(version % 100), services::PadSide::kLeft, 2, "0");
}

Text ReasonText(const ChangeReason& reason) {
  using enum ChangeReason::Kind;
  switch (reason.kind) {
    case kDatabaseStep:
      return {NLSText("conversion to database version %0:s"), {VersionText(reason.to)}};
    case kNewDatabaseVersion:
      return {NLSText("the new database version")};
    case kCalibrationStep:
      return {"%0:s -> %1:s", {std::to_string(reason.from), std::to_string(reason.to)}};
    case kChecksum:
      break;
  }
  return {NLSText("checksum")};
}

Text FactName(const FactDifference& difference) {
  using enum FileFact;
  switch (difference.fact) {
    case kContents:
      return {NLSText("Contents")};
    case kModel:
      return {NLSText("Model")};
    case kModelString:
      return {NLSText("Model string")};
    case kType:
      return {NLSText("Type")};
    case kDatabaseVersion:
      return {NLSText("Database version")};
    case kHardwareVersion:
      return {NLSText("Hardware version")};
    case kSerialNumber:
      return {NLSText("Serial number")};
    case kNetworks:
      return {NLSText("Networks")};
    case kOtherLines:
      break;
  }
  return {NLSText("Other lines of network %0:s"), {std::to_string(difference.network)}};
}

std::string ModelOfTier(const Session& session, const std::string& tier) {
  return radiodb::AppGetRadioModel(session, std::stoi(tier));
}

// The value of a fact in words.
Text FactValue(const Session& session, FileFact fact, const std::string& value) {
  if (fact == FileFact::kContents) {
    return {value == "calibration" ? NLSText("calibration data") : NLSText("personality data")};
  }
  if (fact == FileFact::kType && !value.empty()) {
    return {value == "trunked" ? NLSText("Trunked") : NLSText("Conventional")};
  }
  return {"%0:s", {fact == FileFact::kModel ? ModelOfTier(session, value) : value}};
}

std::vector<std::string> Headings(const Session& session) {
  return {NLSFmt(session, "Network"), NLSFmt(session, "Item"), NLSFmt(session, "Byte"),
          NLSFmt(session, "Before"), NLSFmt(session, "After")};
}

Json ItemJson(const ItemDifference& difference) {
  Json json = {{"network", difference.network}, {"item", Item(difference)}};
  if (difference.record > 0) json["record"] = difference.record;
  json["byte"] = difference.byte;
  json["before"] = difference.before;
  json["after"] = difference.after;
  return json;
}

}  // namespace

std::string ChangeText(const Session& session, const std::vector<Change>& changes) {
  std::vector<std::string> headings = Headings(session);
  headings.push_back(NLSFmt(session, "Reason"));
  Table table(headings);
  for (const Change& change : changes) {
    std::vector<std::string> cells = Cells(change.difference);
    cells.push_back(NLSFmt(session, ReasonText(change.reason)));
    table.AddRow(std::move(cells));
  }
  return table.IsEmpty() ? std::string() : table.Text();
}

Json ChangeJson(const std::vector<Change>& changes) {
  Json json = Json::array();
  for (const Change& change : changes) {
    json.push_back(ItemJson(change.difference));
    json.back()["reason"] = JsonWord(change.reason.kind);
    if (change.reason.to == 0) continue;
    json.back()["step_from"] = change.reason.from;
    json.back()["step_to"] = change.reason.to;
  }
  return json;
}

std::string DifferenceText(const Session& session,
                           const conversion::DataFileDifferences& differences) {
  std::string text;
  if (!differences.facts.empty()) {
    Table facts({"", NLSFmt(session, "Before"), NLSFmt(session, "After")});
    for (const conversion::FactDifference& fact : differences.facts) {
      const auto value = [&](const std::string& fact_value) {
        return OrNothing(NLSFmt(session, FactValue(session, fact.fact, fact_value)));
      };
      facts.AddRow({NLSFmt(session, FactName(fact)), value(fact.before), value(fact.after)});
    }
    text = facts.Text();
  }
  if (differences.items.empty()) return text;
  Table items(Headings(session));
  for (const ItemDifference& difference : differences.items) items.AddRow(Cells(difference));
  return text + (text.empty() ? "" : "\n") + items.Text();
}

Json DifferenceJson(const Session& session, const conversion::DataFileDifferences& differences) {
  const auto value = [&session](const FactDifference& fact, const std::string& text) {
    return fact.fact == FileFact::kModel ? ModelOfTier(session, text) : text;
  };
  Json facts = Json::array();
  for (const FactDifference& fact : differences.facts) {
    facts.push_back(Json{{"name", JsonWord(fact.fact)}});
    if (fact.fact == FileFact::kOtherLines) facts.back()["network"] = fact.network;
    facts.back()["before"] = value(fact, fact.before);
    facts.back()["after"] = value(fact, fact.after);
  }
  Json items = Json::array();
  for (const ItemDifference& difference : differences.items) items.push_back(ItemJson(difference));
  return Json{{"facts", std::move(facts)}, {"items", std::move(items)}};
}

}  // namespace zep::cli
