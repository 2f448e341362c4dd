#include "radiodb/data_file_writer.h"

#include "services/messages.h"

namespace zep::radiodb {
namespace {

using services::NLSFmt;

}  // namespace

bool DataFileWriter::Create(const std::string& path) {
  path_.clear();
  former_ = {};
  failed_ = false;
  if (!KeepFormerContents(path)) return false;
  if (const platform::SystemError error = file_.Open(path, platform::WriteMode::kReplace)) {
    DropFormer();
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
  if (platform::HaveSameContents(path_, former_.path)) DropFormer();
  path_.clear();
  return true;
}

std::string DataFileWriter::Abandon() {
  if (path_.empty()) return {};
  file_.Close();
  std::string text = NLSFmt(job_.session,
                            "%0:s is incomplete, because reading the radio ended early. Please "
                            "read the radio again.",
                            {path_});
  if (!former_.path.empty())
    text += " " + NLSFmt(job_.session, "What it held before is kept in %0:s.", {former_.path});
  path_.clear();
  return text;
}

// A copy, not a new name for the old file: links and permissions stay as they are.
bool DataFileWriter::KeepFormerContents(const std::string& path) {
  if (platform::FileSize(path).value_or(0) == 0) return true;
  former_ = platform::KeepCopy(path, path + ".bak");
  if (!former_.error) return true;
  Fail(former_.error);
  former_ = {};
  return false;
}

void DataFileWriter::DropFormer() {
  if (former_.is_new) platform::RemoveFile(former_.path);
  former_ = {};
}

void DataFileWriter::Fail(const platform::SystemError& error) {
  if (failed_) return;
  failed_ = true;
  ReportError(job_.session, error, "DataFileWriter");
  job_.RequestCancel(services::Failure::kFile);
}

}  // namespace zep::radiodb
