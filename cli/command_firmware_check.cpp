#include "cli/command.h"
#include "cli/image_report.h"
#include "services/messages.h"
#include "services/text_layout.h"

namespace zep::cli {
namespace {

using firmware::FirmwareImage;
using services::NLSFmt;
using services::NLSText;
using services::Table;

std::string ImageTable(const services::Session& session, const FirmwareImage& image,
                       const std::string& name) {
  Table table;
  const auto row = [&](std::string_view title, std::string value) {
    table.AddRow({NLSFmt(session, title), std::move(value)});
  };
  row(NLSText("File"), name);
  row(NLSText("Size"), NLSFmt(session, "%0:s bytes", {std::to_string(image.bytes.size())}));
  row(NLSText("Model"), ImageModelText(session, image));
  row(NLSText("Type"), NLSFmt(session, image.radio_type));
  row(NLSText("Micro"), std::string(MicroName(image.micro_type)));
  row(NLSText("Flash"), std::string(FlashSizeName(image.flash_size)));
  return table.Text();
}

ExitStatus Check(CommandContext& context, const std::string& name) {
  const firmware::SharedImage contents = firmware::ReadFirmwareImage(name);
  const FirmwareImage& image = *contents;
  context.json["image"] = ImageJson(context.session, image, name);
  if (!IsUsableImage(context, image)) return ExitStatus::kFile;
  context.Print(ImageTable(context.session, image, name));
  return ExitStatus::kDone;
}

}  // namespace

Action DeclareFirmwareCheck(Arguments& arguments) {
  auto image = std::make_shared<std::string>();
  arguments.AddWord("IMAGE", *image, NLSText("firmware image (.bin)"));
  return [image](CommandContext& context) { return Check(context, *image); };
}

}  // namespace zep::cli
