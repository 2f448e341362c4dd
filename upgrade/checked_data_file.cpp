#include "upgrade/checked_data_file.h"

#include <algorithm>
#include <cctype>

#include "services/messages.h"

namespace zep::upgrade {
namespace {

std::string UpperCase(std::string text) {
  std::ranges::transform(text, text.begin(),
                         [](unsigned char character) { return std::toupper(character); });
  return text;
}

}  // namespace

std::optional<radiodb::DataFile> ReadCheckedDataFile(services::Session& session,
                                                     const std::string& path) {
  std::optional<radiodb::DataFile> file = radiodb::ReadDataFile(session, path);
  if (!file) return std::nullopt;
  for (radiodb::DataFileLine& line : file->lines) {
    if (line.text != radiodb::kCommonDynamicItemLine) line.text = UpperCase(line.text);
  }
  const radiodb::DataFileCheck check = radiodb::CheckDataFile(session, *file);
  if (check.findings.empty()) return file;
  session.KeepCause(services::Failure::kFile);
  services::NLSMsgBox(
      session,
      services::NLSFmt(session,
                       "The data file %0:s is damaged and cannot be used. %1:s Please use another "
                       "copy of it, or read the radio again.",
                       {path, radiodb::FindingText(session, check.findings.front())}),
      {.icon = services::Icon::kCritical});
  return std::nullopt;
}

}  // namespace zep::upgrade
