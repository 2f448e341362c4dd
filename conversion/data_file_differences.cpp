#include "upgrade/data_file_differences.h"

#include <algorithm>

#include "radiodb/data_file_reader.h"
#include "radiodb/radio_identity.h"
#include "radiodb/radio_models.h"
#include "services/messages.h"
#include "upgrade/checked_data_file.h"
#include "upgrade/personality_data.h"

namespace zep::upgrade {
namespace {

using services::NLSFmt;
using services::NLSText;
using services::Session;

struct Fact {
  std::string_view name;
  std::string value;
};

// In the same order for every file.
std::vector<Fact> FactsOf(const Session& session, const radiodb::DataFileCheck& check) {
  const radiodb::FileIdentity& identity = *check.identity;
  const auto model = radiodb::FindRadioModel(identity.model_code).value_or(radiodb::RadioModel{});
  return {
      {NLSText("Contents"), NLSFmt(session, identity.is_calibration ? NLSText("calibration data")
                                                                    : NLSText("personality data"))},
      {NLSText("Model"), radiodb::AppGetRadioModel(session, model.tier)},
      {NLSText("Model string"), identity.model_string},
      {NLSText("Type"),
       NLSFmt(session, radiodb::ReturnTypeStringFromEnum(identity.type_digit - '0'))},
      {NLSText("Database version"), identity.database_version},
      {NLSText("Hardware version"), identity.hardware_version},
      {NLSText("Serial number"), identity.serial_number},
      {NLSText("Networks"), std::to_string(check.networks)},
  };
}

void CompareFacts(const Session& session, const radiodb::DataFileCheck& before,
                  const radiodb::DataFileCheck& after, DataFileDifferences& differences) {
  std::vector<Fact> old_facts = FactsOf(session, before);
  std::vector<Fact> new_facts = FactsOf(session, after);
  for (std::size_t at = 0; at < old_facts.size(); ++at) {
    if (old_facts[at].value == new_facts[at].value) continue;
    differences.facts.push_back({NLSFmt(session, old_facts[at].name),
                                 std::move(old_facts[at].value), std::move(new_facts[at].value)});
  }
}

// The lines of a network that are in no item.
std::string OtherLines(const PersonalityData& data, std::size_t network) {
  std::string text;
  if (network >= data.networks.size()) return text;
  for (const PersonalityLine& line : data.networks[network].lines) {
    if (line.other_text.empty()) continue;
    if (!text.empty()) text += ", ";
    text += line.other_text;
  }
  return text;
}

int DatabaseVersionOf(const radiodb::DataFileCheck& check) {
  return radiodb::VersionNumber(check.identity->database_version);
}

}  // namespace

std::optional<DataFileDifferences> CompareDataFiles(Session& session, const std::string& before,
                                                    const std::string& after) {
  const std::optional<radiodb::DataFile> old_file = ReadCheckedDataFile(session, before);
  if (!old_file) return std::nullopt;
  const std::optional<radiodb::DataFile> new_file = ReadCheckedDataFile(session, after);
  if (!new_file) return std::nullopt;
  const radiodb::DataFileCheck old_check = radiodb::CheckDataFile(session, *old_file);
  const radiodb::DataFileCheck new_check = radiodb::CheckDataFile(session, *new_file);
  DataFileDifferences differences;
  CompareFacts(session, old_check, new_check, differences);

  const PersonalityData old_data = ItemsOf(session, *old_file);
  const PersonalityData new_data = ItemsOf(session, *new_file);
  static const ItemArray kNoItems;
  const auto items_of = [](const PersonalityData& data, std::size_t at) -> const ItemArray& {
    return at < data.networks.size() ? data.networks[at].items : kNoItems;
  };
  const std::size_t networks = std::max(old_data.networks.size(), new_data.networks.size());
  for (std::size_t at = 0; at < networks; ++at) {
    const std::vector<ItemDifference> items =
        CompareItems(static_cast<int>(at + 1), items_of(old_data, at), DatabaseVersionOf(old_check),
                     items_of(new_data, at), DatabaseVersionOf(new_check));
    std::string old_lines = OtherLines(old_data, at);
    std::string new_lines = OtherLines(new_data, at);
    if (old_lines != new_lines) {
      differences.facts.push_back(
          {NLSFmt(session, "Other lines of network %0:s", {std::to_string(at + 1)}),
           std::move(old_lines), std::move(new_lines)});
    }
    differences.items.insert(differences.items.end(), items.begin(), items.end());
  }
  return differences;
}

}  // namespace zep::upgrade
