#include "services/radio_model.h"

#include "services/resource_ids.h"

namespace zep::services {

const std::string& AppGetRadioModel(const Session& session, int tier) {
  return session.strings.Get(tier >= 1 && tier <= kLastModelTier ? kResModelName + tier : 0);
}

}  // namespace zep::services
