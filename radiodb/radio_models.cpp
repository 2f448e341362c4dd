#include "radiodb/radio_models.h"

#include <array>

#include "services/messages.h"
#include "services/resource_ids.h"
#include "services/session.h"

namespace zep::radiodb {
namespace {

using services::NLSFmt;
using services::NLSText;

struct ModelCode {
  std::string_view code;
  RadioModel model;
};

// The tiers are not in the order of the codes.
constexpr std::array kModelCodes = {
    ModelCode{"11", {.tier = 1, .type = RadioType::kConventional}},
    ModelCode{"12", {.tier = 1, .type = RadioType::kTrunked}},
    ModelCode{"21", {.tier = 2, .type = RadioType::kConventional}},
    ModelCode{"22", {.tier = 2, .type = RadioType::kTrunked}},
    ModelCode{"31", {.tier = 3, .type = RadioType::kConventional}},
    ModelCode{"41", {.tier = 4, .type = RadioType::kConventional}},
    ModelCode{"42", {.tier = 6, .type = RadioType::kTrunked}},
    ModelCode{"43", {.tier = 10, .type = RadioType::kConventionalII}},
    ModelCode{"51", {.tier = 13, .type = RadioType::kConventional}},
    ModelCode{"52", {.tier = 7, .type = RadioType::kTrunked}},
    ModelCode{"61", {.tier = 5, .type = RadioType::kConventional}},
    ModelCode{"62", {.tier = 8, .type = RadioType::kTrunked}},
    ModelCode{"63", {.tier = 11, .type = RadioType::kConventionalII}},
    ModelCode{"71", {.tier = 9, .type = RadioType::kConventional}},
    ModelCode{"81", {.tier = 12, .type = RadioType::kConventional}},
};

}  // namespace

std::optional<RadioModel> FindRadioModel(std::string_view code) {
  for (const ModelCode& row : kModelCodes) {
    if (row.code == code) return row.model;
  }
  return std::nullopt;
}

std::optional<RadioModel> LookUpRadioModel(services::Session& session, std::string_view code) {
  const std::optional<RadioModel> model = FindRadioModel(code);
  if (!model) {
    NLSMsgBox(session, NLSFmt(session, "Radio Model is invalid, will be set to '%0:s'.",
                              {AppGetRadioModel(session, RadioModel{}.tier)}));
  }
  return model;
}

const std::string& AppGetRadioModel(const services::Session& session, int tier) {
  const bool is_tier = tier >= 1 && tier <= services::kLastModelTier;
  return session.strings.Get(is_tier ? services::kResModelName + tier : 0);
}

CalibrationItems CalibrationItemsOf(const RadioModel& model) {
  return {.in_radio = model.type == RadioType::kTrunked ? "47" : "2C",
          .in_file = model.tier == 2 ? "47" : "2C"};
}

int FirstGeneration(int tier) {
  if (tier == 10) return 1;
  return tier == 11 ? 2 : tier;
}

bool SwitchesOffAfterDownload(int tier) { return tier == 3; }

std::string_view ReturnTypeStringFromEnum(int type) {
  switch (type) {
    case 1:
    // Kept: both conventional generations have the same name.
    case 3:
      return NLSText("Conventional");
    case 2:
      return NLSText("Trunked");
    default:
      return {};
  }
}

}  // namespace zep::radiodb
