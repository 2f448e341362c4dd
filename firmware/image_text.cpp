#include "firmware/image_text.h"

#include "radiodb/radio_models.h"
#include "services/messages.h"

namespace zep::firmware {

using services::NLSFmt;

std::string ImageModelText(const services::Session& session, const FirmwareImage& image) {
  const std::string name = image.radio_model == 0
                               ? NLSFmt(session, "Unknown")
                               : radiodb::AppGetRadioModel(session, image.radio_model);
  return name + " (" + image.model_code + ")";
}

std::string ImageFacts(const services::Session& session, const FirmwareImage& image) {
  if (!image.IsUsable()) return {};
  std::string facts = ImageModelText(session, image);
  for (const std::string_view fact :
       {std::string_view(image.radio_type), MicroName(image.micro_type),
        FlashSizeName(image.flash_size)}) {
    if (!fact.empty()) facts += ", " + NLSFmt(session, fact);
  }
  return facts;
}

}  // namespace zep::firmware
