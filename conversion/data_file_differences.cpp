#include "conversion/data_file_differences.h"

#include <algorithm>
#include <utility>

#include "conversion/personality_data.h"
#include "radiodb/radio_models.h"

namespace zep::conversion {
namespace {

using radiodb::DataFile;

struct Fact {
  FileFact fact;
  std::string value;
};

std::string TypeOf(const radiodb::FileIdentity& identity) {
  switch (identity.type_digit) {
    case '1':
    case '3':
      return "conventional";
    case '2':
      return "trunked";
    default:
      return "";
  }
}

// In the same order for every file.
std::vector<Fact> FactsOf(const DataFile& file) {
  using enum FileFact;
  const radiodb::FileIdentity& identity = *file.Identity();
  const auto model = radiodb::FindRadioModel(identity.model_code).value_or(radiodb::RadioModel{});
  return {
      {kContents, identity.is_calibration ? "calibration" : "personality"},
      {kModel, std::to_string(model.tier)},
      {kModelString, identity.model_string},
      {kType, TypeOf(identity)},
      {kDatabaseVersion, identity.database_version},
      {kHardwareVersion, identity.hardware_version},
      {kSerialNumber, identity.serial_number},
      {kNetworks, std::to_string(file.Networks())},
  };
}

void CompareFacts(const DataFile& before, const DataFile& after,
                  std::vector<FactDifference>& differences) {
  std::vector<Fact> old_facts = FactsOf(before);
  std::vector<Fact> new_facts = FactsOf(after);
  for (std::size_t at = 0; at < old_facts.size(); ++at) {
    if (old_facts[at].value == new_facts[at].value) continue;
    differences.push_back({.fact = old_facts[at].fact,
                           .before = std::move(old_facts[at].value),
                           .after = std::move(new_facts[at].value)});
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

int DatabaseVersionOf(const DataFile& file) {
  return radiodb::VersionNumber(file.Identity()->database_version);
}

}  // namespace

DataFileDifferences CompareDataFiles(const DataFile& before, const DataFile& after) {
  DataFileDifferences differences;
  CompareFacts(before, after, differences.facts);

  const PersonalityData old_data = *ReadDatabase(before);
  const PersonalityData new_data = *ReadDatabase(after);
  const ItemArray no_items;
  const auto items_of = [&](const PersonalityData& data, std::size_t at) -> const ItemArray& {
    return at < data.networks.size() ? data.networks[at].items : no_items;
  };
  const std::size_t networks = std::max(old_data.networks.size(), new_data.networks.size());
  for (std::size_t at = 0; at < networks; ++at) {
    const std::vector<ItemDifference> items =
        CompareItems(static_cast<int>(at + 1), items_of(old_data, at), DatabaseVersionOf(before),
                     items_of(new_data, at), DatabaseVersionOf(after));
    std::string old_lines = OtherLines(old_data, at);
    std::string new_lines = OtherLines(new_data, at);
    if (old_lines != new_lines) {
      differences.facts.push_back({FileFact::kOtherLines, static_cast<int>(at + 1),
                                   std::move(old_lines), std::move(new_lines)});
    }
    differences.items.insert(differences.items.end(), items.begin(), items.end());
  }
  return differences;
}

}  // namespace zep::conversion
