// What a firmware image is for, in words for people.
#pragma once

#include <string>
#include <string_view>

#include "firmware/image_file.h"

namespace zep::firmware {

// "ZEP 2250 (52)"; "Unknown (99)"
std::string ImageModelText(const services::Session& session, const ImageInspection& image);
// "A1" or "E1"; empty when it is not known. And "1 Mbit" or "2 Mbit".
std::string_view MicroName(const ImageInspection& image);
std::string_view FlashName(const ImageInspection& image);

// All of it in one line: "ZEP 2250 (52), Trunked, E1, 2 Mbit". Empty for a file that is no image.
std::string ImageFacts(const services::Session& session, const ImageInspection& image);

}  // namespace zep::firmware
