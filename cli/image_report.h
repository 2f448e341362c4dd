// What a firmware image is for, for people and for programs.
#pragma once

#include <string>

#include "cli/command_context.h"
#include "firmware/image_text.h"

namespace zep::cli {

Json ImageJson(const services::Session& session, const firmware::FirmwareImage& image,
               const std::string& name);

// Whether the file is an image. If not, the user is told why.
bool IsUsableImage(CommandContext& context, const firmware::FirmwareImage& image);

}  // namespace zep::cli
