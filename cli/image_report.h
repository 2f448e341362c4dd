// What a firmware image is for, for people and for programs.
#pragma once

#include <string>
#include <string_view>

#include "cli/program.h"
#include "firmware/image_file.h"

namespace zep::cli {

// "ZEP 2250 (52)"; "Unknown (99)"
std::string ImageModelText(const services::Session& session,
                           const firmware::ImageInspection& image);
// "A1" or "E1"; empty when it is not known. And "1 Mbit" or "2 Mbit".
std::string_view MicroName(const firmware::ImageInspection& image);
std::string_view FlashName(const firmware::ImageInspection& image);

Json ImageJson(const services::Session& session, const firmware::ImageInspection& image,
               const std::string& name);

// Whether the file is an image. If not, the user is told why.
bool IsUsableImage(Program& program, const firmware::ImageInspection& image);

}  // namespace zep::cli
