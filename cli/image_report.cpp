#include "cli/image_report.h"

#include "cli/identity_report.h"
#include "services/messages.h"

namespace zep::cli {

using firmware::FirmwareImage;

Json ImageJson(const services::Session& session, const FirmwareImage& image,
               const std::string& name) {
  Json json;
  json.Set("file", name);
  json.Set("size", image.bytes.size());
  json.Set("valid", image.IsUsable());
  json.Set("model_code", image.model_code);
  json.Set("model", image.radio_model == 0 ? "" : ModelName(session, image.model_code));
  json.Set("type", image.radio_type);
  json.Set("micro", MicroName(image.micro_type));
  json.Set("flash", FlashSizeName(image.flash_size));
  return json;
}

bool IsUsableImage(CommandContext& context, const FirmwareImage& image) {
  if (image.IsUsable()) return true;
  NLSMsgBox(context.session, ImageProblemText(context.session, image),
            {.icon = services::Icon::kCritical});
  return false;
}

}  // namespace zep::cli
