// A file of radio data as it is written, line by line while the records arrive.
#pragma once

#include <string>
#include <string_view>

#include "link/job.h"
#include "platform/files.h"

namespace zep::radiodb {

// When an existing file is written anew its former contents are kept beside it ("NAME.bak", or
// "NAME.bak2" and so on), unless the new ones are the same. A failure is reported once and cancels
// the job.
class DataFileWriter {
 public:
  explicit DataFileWriter(link::Job& job) : job_(job) {}

  // Makes or replaces the file. False when that is not possible; what it held is as before then.
  bool Create(const std::string& path);
  bool IsOpen() const { return file_.IsOpen(); }

  // Writes a line and CRLF. Does nothing when there is no file.
  void WriteLine(std::string_view line);

  // Ends a file that is complete. False when it could not be stored.
  bool Finish();
  // Ends a file that is not complete. What is to be told to the user of it; empty when there was no
  // file.
  std::string Abandon();

 private:
  bool KeepFormerContents(const std::string& path);
  void DropFormer();
  void Fail(const platform::SystemError& error);

  link::Job& job_;
  platform::FileWriter file_;
  std::string path_;           // of the file that is being written; empty when there is none
  platform::FileCopy former_;  // of its former contents; no path when there is none
  bool failed_ = false;
};

}  // namespace zep::radiodb
