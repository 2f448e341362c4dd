#include "cli/image_report.h"

#include "cli/firmware_words.h"
#include "cli/identity_report.h"
#include "cli/json_words.h"
#include "services/messages.h"

namespace zep::cli {

using firmware::FirmwareImage;

Json ImageJson(const services::Session& session, const FirmwareImage& image,
               const std::string& name) {
  return Json{
      {"file", name},
      {"size", image.bytes.size()},
      {"valid", image.IsUsable()},
      {"model_code", image.model_code},
      {"model", image.radio_model == 0 ? "" : ModelName(session, image.model_code)},
      {"type", RadioTypeWord(image.model_code)},
      {"micro", JsonWord(image.micro_type)},
      {"flash_size", JsonWord(image.flash_size)},
  };
}

bool IsUsableImage(CommandContext& context, const FirmwareImage& image) {
  if (image.IsUsable()) return true;
  NLSMsgBox(context.session, ImageProblemText(context.session, image),
            {.icon = services::Icon::kCritical});
  return false;
}

}  // namespace zep::cli
