#include "conversion/personality_conversion.h"

#include <utility>

#include "conversion/personality_steps.h"

namespace zep::conversion {
namespace {

// What a step, or the recording of the version, has made of the data before it.
struct Stage {
  const PersonalityData& before;
  int old_version;
  int new_version;
  ChangeReason reason;
};

void CollectChanges(const Stage& stage, const PersonalityData& data, std::vector<Change>& changes) {
  for (std::size_t at = 0; at < data.networks.size(); ++at) {
    for (ItemDifference& difference :
         CompareItems(static_cast<int>(at + 1), stage.before.networks[at].items, stage.old_version,
                      data.networks[at].items, stage.new_version)) {
      changes.push_back({std::move(difference), stage.reason});
    }
  }
}

void ApplyStep(const PersonalityStep& step, const ItemArray& defaults, PersonalityData& data,
               std::vector<Remark>& remarks) {
  if (step.convert == nullptr) return;
  for (PersonalityNetwork& network : data.networks) {
    step.convert({network.items, defaults, remarks});
  }
}

}  // namespace

DatabaseResult ConvertDatabase(const DatabaseConversion& conversion, PersonalityData& data) {
  using enum ChangeReason::Kind;
  DatabaseResult result{.version = conversion.old_version, .remarks = {}, .changes = {}};
  PersonalityData before;
  const auto begin = [&] {
    if (conversion.collect_changes) before = data;
  };
  const auto end = [&](int to, const ChangeReason& reason) {
    if (!conversion.collect_changes) return;
    CollectChanges({before, result.version, to, reason}, data, result.changes);
  };
  for (const PersonalityStep& step : PersonalitySteps()) {
    if (conversion.new_version < step.version || result.version >= step.version) continue;
    begin();
    ApplyStep(step, conversion.defaults, data, result.remarks);
    end(step.version, {kDatabaseStep, result.version, step.version});
    result.version = step.version;
  }
  if (conversion.old_version != conversion.new_version) {
    begin();
    RecordVersion(data.networks.front().items, conversion.version_text);
    end(result.version, {.kind = kNewDatabaseVersion});
  }
  return result;
}

}  // namespace zep::conversion
