#include "firmware/image_text.h"

#include "radiodb/radio_models.h"
#include "services/messages.h"

namespace zep::firmware {

using services::NLSFmt;

std::string ImageModelText(const services::Session& session, const ImageInspection& image) {
  const std::string name = image.radio_model == 0
                               ? NLSFmt(session, "Unknown")
                               : radiodb::AppGetRadioModel(session, image.radio_model);
  return name + " (" + image.model_code + ")";
}

std::string_view MicroName(const ImageInspection& image) {
  if (image.micro_type == 0) return {};
  return image.micro_type == 1 ? "A1" : "E1";
}

std::string_view FlashName(const ImageInspection& image) {
  if (image.flash_size == 0) return {};
  return image.flash_size == 1 ? "1 Mbit" : "2 Mbit";
}

std::string ImageFacts(const services::Session& session, const ImageInspection& image) {
  if (image.problem != ImageProblem::kNone) return {};
  std::string facts = ImageModelText(session, image);
  for (const std::string_view fact :
       {std::string_view(image.radio_type), MicroName(image), FlashName(image)}) {
    if (!fact.empty()) facts += ", " + NLSFmt(session, fact);
  }
  return facts;
}

}  // namespace zep::firmware
