// What a firmware image is for, in words for people.
#pragma once

#include <string>
#include <string_view>

#include "firmware/firmware_image.h"

namespace zep::firmware {

// "ZEP 2250 (52)"; "Unknown (99)"
std::string ImageModelText(const services::Session& session, const FirmwareImage& image);

// All of it in one line: "ZEP 2250 (52), Trunked, E1, 2 Mbit". Empty for a file that is no image.
std::string ImageFacts(const services::Session& session, const FirmwareImage& image);

}  // namespace zep::firmware
