// The radio models: what the two-digit model code of a radio, an image or a data file stands for.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zep::services {
class Session;
}

namespace zep::radiodb {

// The second digit of a model code.
enum class RadioType { kConventional = 1, kTrunked = 2, kConventionalII = 3 };

struct RadioModel {
  int tier = 1;  // 1 to 13; see AppGetRadioModel
  RadioType type = RadioType::kConventional;
};

// The model with this code; nothing when there is none.
std::optional<RadioModel> FindRadioModel(std::string_view code);

// The same, and the user is told when there is none.
std::optional<RadioModel> LookUpRadioModel(services::Session& session, std::string_view code);

// The name of the models of a tier, 1 to 13; empty for any other number.
const std::string& AppGetRadioModel(const services::Session& session, int tier);

// The item that holds the calibration data. For a transfer the radio's type decides, as in the
// radio itself: "47" when it is trunked, else "2C". Kept: where a saved file is converted the model
// tier decides, "47" on tier 2, else "2C"; only a file that lacks that item is taken to hold the
// radio's.
struct CalibrationItems {
  std::string_view in_radio;
  std::string_view in_file;
};
CalibrationItems CalibrationItemsOf(const RadioModel& model);

// The tier whose images a tier takes: tiers 10 and 11 take those of 1 and 2.
int FirstGeneration(int tier);

// Radios of this tier switch off after a firmware download.
bool SwitchesOffAfterDownload(int tier);

// "Conventional" for 1 and 3, "Trunked" for 2, else an empty text. Untranslated.
std::string_view ReturnTypeStringFromEnum(int type);

}  // namespace zep::radiodb
