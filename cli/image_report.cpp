#include "cli/image_report.h"

#include "cli/identity_report.h"
#include "services/messages.h"

namespace zep::cli {

using firmware::ImageInspection;

Json ImageJson(const services::Session& session, const ImageInspection& image,
               const std::string& name) {
  Json json;
  json.Set("file", name);
  json.Set("size", image.size);
  json.Set("valid", image.problem == firmware::ImageProblem::kNone);
  json.Set("model_code", image.model_code);
  json.Set("model", image.radio_model == 0 ? "" : ModelName(session, image.model_code));
  json.Set("type", image.radio_type);
  json.Set("micro", MicroName(image));
  json.Set("flash", FlashName(image));
  return json;
}

bool IsUsableImage(CommandContext& context, const ImageInspection& image) {
  if (image.problem == firmware::ImageProblem::kNone) return true;
  NLSMsgBox(context.session, ImageProblemText(context.session, image),
            {.icon = services::Icon::kCritical});
  return false;
}

}  // namespace zep::cli
