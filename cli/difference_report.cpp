#include "cli/difference_report.h"

#include "services/hex_text.h"
#include "services/messages.h"

namespace zep::cli {
namespace {

using services::NLSFmt;
using services::Session;
using services::Table;
using upgrade::Change;
using upgrade::ItemDifference;

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
    cells.push_back(change.reason);
    table.AddRow(std::move(cells));
  }
  return table.IsEmpty() ? std::string() : table.Text();
}

Json ChangeJson(const std::vector<Change>& changes) {
  Json json = Json::array();
  for (const Change& change : changes) {
    json.push_back(ItemJson(change.difference));
    json.back()["reason"] = change.reason;
  }
  return json;
}

std::string DifferenceText(const Session& session,
                           const upgrade::DataFileDifferences& differences) {
  std::string text;
  if (!differences.facts.empty()) {
    Table facts({"", NLSFmt(session, "Before"), NLSFmt(session, "After")});
    for (const upgrade::FactDifference& fact : differences.facts) {
      facts.AddRow({fact.name, OrNothing(fact.before), OrNothing(fact.after)});
    }
    text = facts.Text();
  }
  if (differences.items.empty()) return text;
  Table items(Headings(session));
  for (const ItemDifference& difference : differences.items) items.AddRow(Cells(difference));
  return text + (text.empty() ? "" : "\n") + items.Text();
}

Json DifferenceJson(const upgrade::DataFileDifferences& differences) {
  Json facts = Json::array();
  for (const upgrade::FactDifference& fact : differences.facts)
    facts.push_back(Json{{"name", fact.name}, {"before", fact.before}, {"after", fact.after}});
  Json items = Json::array();
  for (const ItemDifference& difference : differences.items) items.push_back(ItemJson(difference));
  return Json{{"facts", std::move(facts)}, {"items", std::move(items)}};
}

}  // namespace zep::cli
