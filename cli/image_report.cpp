#include "cli/image_report.h"

#include "cli/identity_report.h"
#include "cli/json_words.h"
#include "services/messages.h"

namespace zep::cli {

using firmware::ImageInspection;

Json ImageJson(const services::Session& session, const ImageInspection& image,
               const std::string& name) {
  return Json{
      {"file", name},
      {"size", image.size},
      {"valid", image.problem == firmware::ImageProblem::kNone},
      {"model_code", image.model_code},
      {"model", image.radio_model == 0 ? "" : ModelName(session, image.model_code)},
      {"type", RadioTypeWord(image.model_code)},
      {"micro", MicroWord(image.micro_type)},
      {"flash_size", FlashSizeWord(image.flash_size)},
  };
}

bool IsUsableImage(CommandContext& context, const ImageInspection& image) {
  if (image.problem == firmware::ImageProblem::kNone) return true;
  NLSMsgBox(context.session, ImageProblemText(context.session, image),
            {.icon = services::Icon::kCritical});
  return false;
}

}  // namespace zep::cli
