#include "radiodb/data_file_writer.h"

#include "services/messages.h"

namespace zep::radiodb {
namespace {

using services::NLSFmt;

// "NAME.bak", or "NAME.bak2" and so on: what an earlier read has left is never replaced.
std::string FreeNameBeside(const std::string& path) {
  const auto is_taken = [](const std::string& name) {
    return platform::FileExists(name) || platform::IsFolder(name);
  };
  std::string name = path + ".bak";
  for (int number = 2; is_taken(name); ++number) name = path + ".bak" + std::to_string(number);
  return name;
}

}  // namespace

bool DataFileWriter::Create(const std::string& path) {
  path_.clear();
  former_.clear();
  failed_ = false;
  if (!KeepFormerContents(path)) return false;
  if (const platform::SystemError error = file_.Open(path, platform::WriteMode::kReplace)) {
    if (!former_.empty()) platform::RemoveFile(former_);
    Fail(error);
    return false;
  }
  path_ = path;
  return true;
}

void DataFileWriter::WriteLine(std::string_view line) {
  if (!file_.IsOpen() || failed_) return;
  file_.Write(std::string(line) + "\r\n");
  if (file_.Error()) Fail(file_.Error());
}

bool DataFileWriter::Finish() {
  if (path_.empty()) return true;
  file_.Flush();
  if (const platform::SystemError error = file_.Close()) {
    Fail(error);
    return false;
  }
  if (!former_.empty()) platform::RemoveFile(former_);
  path_.clear();
  return true;
}

std::string DataFileWriter::Abandon() {
  if (path_.empty()) return {};
  file_.Close();
  std::string text = NLSFmt(session_,
                            "%0:s is incomplete, because reading the radio ended early. Please "
                            "read the radio again.",
                            {path_});
  if (!former_.empty())
    text += " " + NLSFmt(session_, "What it held before is kept in %0:s.", {former_});
  path_.clear();
  return text;
}

// A copy, not a new name for the old file: links and permissions stay as they are.
bool DataFileWriter::KeepFormerContents(const std::string& path) {
  if (platform::FileSize(path).value_or(0) == 0) return true;
  const platform::FileContents contents = platform::ReadWholeFile(path);
  const std::string name = FreeNameBeside(path);
  const platform::SystemError error =
      contents.error ? contents.error : platform::WriteWholeFile(name, contents.bytes);
  if (error) {
    Fail(error);
    return false;
  }
  former_ = name;
  return true;
}

void DataFileWriter::Fail(const platform::SystemError& error) {
  if (failed_) return;
  failed_ = true;
  ReportError(session_, error, "DataFileWriter");
  session_.RequestCancel(services::Failure::kFile);
}

}  // namespace zep::radiodb
