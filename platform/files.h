// Files and folders, by UTF-8 names on every system. Files are read and written whole; what can go
// wrong is told with the cause and the next step for the user.
#pragma once

#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/system_error.h"

namespace zep::platform {

// Whether there is something of that name that is no folder; whether there is a folder.
bool FileExists(const std::string& path);
bool IsFolder(const std::string& path);

// Whether the file's folder can be looked into and the file is not in it. A file on a drive that is
// not there now, or that this user may not see, is not gone.
bool IsGone(const std::string& path);

// Whether two names mean the same file or folder, which need not be there yet.
bool IsSameFile(const std::string& a, const std::string& b);

// Whether a file or a folder has this name.
bool IsTaken(const std::string& path);

// The path from the root, which stays right when the working folder changes; empty for an empty
// one.
std::string AbsolutePath(const std::string& path);

// Bytes in an ordinary file; nothing when it is missing or something else.
std::optional<std::uint64_t> FileSize(const std::string& path);

struct FileContents {
  std::string bytes;  // empty when there is an error
  SystemError error;
};

// No file of ours comes near this size.
inline constexpr std::uint64_t kLargestFile = 16U << 20;

// Reads an ordinary file. Folders, devices and files longer than most bytes are refused without
// reading them.
FileContents ReadWholeFile(const std::string& path, std::uint64_t most = kLargestFile);

// Makes or replaces the file: it has the old contents or all of the new ones whatever happens, and
// what a success has written survives a power cut. A link stays a link, a device is written as it
// is.
SystemError WriteWholeFile(const std::string& path, std::string_view bytes);

// A file that is made, or made anew, as a whole: that it can be made is known before there is
// anything to be put into it.
class NewFile {
 public:
  NewFile() = default;
  ~NewFile() { GiveUp(); }
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  // Fails where WriteWholeFile would. What the file holds stays; the new one grows beside it.
  SystemError Open(const std::string& path);
  bool IsOpen() const { return file_ != nullptr; }

  // Puts all of the contents in the file's place, as WriteWholeFile does. REQUIRES: it is open.
  SystemError Commit(std::string_view bytes);

 private:
  // Leaves nothing behind.
  void GiveUp();

  std::string path_;
  std::string target_;     // what a link points to
  std::string temporary_;  // empty for a device, which is written as it is
  std::FILE* file_ = nullptr;
};

struct FileCopy {
  std::string path = {};
  SystemError error = {};
  bool is_new = false;  // false when there was such a copy already
};

// Copies a file to name, or to name2, name3 and so on where something else has that name; a copy of
// the same contents that is there already will do. path is the name that was tried last when there
// is an error.
FileCopy KeepCopy(const std::string& path, const std::string& name);

// Before a file is replaced by these bytes: copies what it holds to NAME.bak, or NAME.bak2 and so
// on. No path when there is nothing to keep: it is missing, empty or holds the same bytes.
FileCopy KeepFormer(const std::string& path, std::string_view bytes);

// Whether both are files of the same contents.
bool HaveSameContents(const std::string& a, const std::string& b);

// Makes the folder and those above it, as far as they are missing.
SystemError MakeFolders(const std::string& path);

// Gives a file another name in the same file system; a file that has that name already is replaced.
SystemError RenameFile(const std::string& from, const std::string& to);

// Removes a file. One that is not there is no error.
SystemError RemoveFile(const std::string& path);

// Whether this user can make files in the folder.
bool IsWritableFolder(const std::string& path);

// Names of the files and folders in a folder, sorted; empty when it cannot be read.
std::vector<std::string> ListFolder(const std::string& path);

enum class WriteMode { kReplace, kAppend };

// A file that is written bit by bit. The first error is kept and all that follows does nothing.
class FileWriter {
 public:
  FileWriter() = default;
  ~FileWriter() { Close(); }
  FileWriter(const FileWriter&) = delete;
  FileWriter& operator=(const FileWriter&) = delete;

  // Opens the file, which is made when missing, empty or at its end. Closes the one before and
  // forgets its error.
  SystemError Open(const std::string& path, WriteMode mode);
  bool IsOpen() const { return file_ != nullptr; }

  void Write(std::string_view bytes);
  // The same, and the bytes are kept even when the program dies.
  void WriteThrough(std::string_view bytes);
  // Returns when all is on the disk.
  SystemError Flush();
  // Returns the first error since Open().
  SystemError Close();

  const SystemError& Error() const { return error_; }

 private:
  void KeepError();

  std::FILE* file_ = nullptr;
  std::string path_;
  SystemError error_;
};

}  // namespace zep::platform
