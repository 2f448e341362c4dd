#include "platform/files.h"

#include <algorithm>
#include <cerrno>
#include <tuple>
#include <utility>

#include "platform/advice.h"
#include "platform/files_native.h"

namespace zep::platform {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kReadChunk = 256 << 10;

enum class Use { kReading, kWriting };

std::string FolderAbove(const std::string& path) {
  const std::string folder = Utf8Path(NativePath(path).parent_path());
  return folder.empty() ? "." : folder;
}

// Also where a limit is set for the user.
bool IsDiskFull(const std::error_code& code) {
#ifdef EDQUOT
  if (code == std::error_code(EDQUOT, std::generic_category())) return true;
#endif
  return code == std::errc::no_space_on_device || code == std::errc::file_too_large;
}

// What the user can do about the failed use of a file.
SystemError FileError(const std::error_code& code, const std::string& path, Use use) {
  SystemError error = MakeSystemError(code, path);
  const std::string folder = FolderAbove(path);
  if (code == std::errc::no_such_file_or_directory || code == std::errc::not_a_directory) {
    if (IsFolder(folder)) return WithAdvice(std::move(error), Advice::kFileMissing, {path});
    return WithAdvice(std::move(error), Advice::kFolderMissing, {folder});
  }
  if (code == std::errc::permission_denied || code == std::errc::operation_not_permitted) {
    if (use == Use::kWriting && IsFolder(folder) && !MayWrite(folder)) {
      return WithAdvice(std::move(error), Advice::kFolderForbidden, {folder});
    }
    return WithAdvice(std::move(error), Advice::kFileForbidden, {path});
  }
  if (code == std::errc::is_a_directory) {
    return WithAdvice(std::move(error), Advice::kIsFolder, {path});
  }
  if (code == std::errc::read_only_file_system) {
    return WithAdvice(std::move(error), Advice::kDiskReadOnly, {path});
  }
  if (code == std::errc::text_file_busy || code == std::errc::device_or_resource_busy) {
    return WithAdvice(std::move(error), Advice::kInUse, {path});
  }
  if (IsDiskFull(code)) return WithAdvice(std::move(error), Advice::kDiskFull, {path});
  return error;
}

SystemError FileError(std::errc condition, const std::string& path, Use use) {
  return FileError(std::make_error_code(condition), path, use);
}

SystemError TooLong(const std::string& path, std::uint64_t most) {
  return WithAdvice(FileError(std::errc::file_too_large, path, Use::kReading), Advice::kFileTooLong,
                    {path, std::to_string(most)});
}

using Temporary = std::pair<std::string, std::FILE*>;  // its path

// A new file beside the target. A killed program of the same process number may have left its own.
Temporary OpenTemporary(const std::string& target) {
  constexpr int kMostTries = 100;
  const std::string name = target + "." + std::to_string(ProcessNumber());
  std::string path = name + ".tmp";
  std::FILE* file = OpenStdio(path, OpenMode::kNew);
  for (int number = 2; file == nullptr && errno == EEXIST && number <= kMostTries; ++number) {
    path = name + "-" + std::to_string(number) + ".tmp";
    file = OpenStdio(path, OpenMode::kNew);
  }
  return {path, file};
}

SystemError LastFileError(const std::string& path, Use use) {
  return FileError(std::error_code(errno, std::generic_category()), path, use);
}

// The file that is meant by a name: what a link points to.
std::string LinkTarget(const std::string& path) {
  std::error_code code;
  if (!fs::is_symlink(NativePath(path), code)) return path;
  const fs::path target = fs::weakly_canonical(NativePath(path), code);
  return code ? path : Utf8Path(target);
}

SystemError WriteAndSync(std::FILE* file, const std::string& path, std::string_view bytes) {
  const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size() &&
                       std::fflush(file) == 0 && SyncToDisk(file);
  SystemError error = written ? SystemError{} : LastFileError(path, Use::kWriting);
  if (std::fclose(file) != 0 && !error) error = LastFileError(path, Use::kWriting);
  return error;
}

}  // namespace

bool FileExists(const std::string& path) {
  std::error_code code;
  const fs::file_status status = fs::status(NativePath(path), code);
  return fs::exists(status) && !fs::is_directory(status);
}

bool IsFolder(const std::string& path) {
  std::error_code code;
  return fs::is_directory(NativePath(path), code);
}

bool IsGone(const std::string& path) {
  std::error_code code;
  return fs::status(NativePath(path), code).type() == fs::file_type::not_found &&
         fs::is_directory(NativePath(path).parent_path(), code);
}

bool IsSameFile(const std::string& a, const std::string& b) {
  std::error_code code;
  if (fs::equivalent(NativePath(a), NativePath(b), code)) return true;
  const auto whole = [&code](const std::string& path) {
    // With a separator at its end, as a folder may be given with one or without.
    const fs::path full = fs::absolute(NativePath(path), code) / "";
    return Utf8Path(fs::weakly_canonical(full, code));
  };
  return whole(a) == whole(b);
}

bool IsTaken(const std::string& path) { return FileExists(path) || IsFolder(path); }

std::string AbsolutePath(const std::string& path) {
  if (path.empty()) return {};
  std::error_code code;
  const fs::path whole = fs::absolute(NativePath(path), code).lexically_normal();
  return code ? path : Utf8Path(whole);
}

std::optional<std::uint64_t> FileSize(const std::string& path) {
  std::error_code code;
  if (!fs::is_regular_file(NativePath(path), code)) return std::nullopt;
  const std::uintmax_t size = fs::file_size(NativePath(path), code);
  if (code) return std::nullopt;
  return size;
}

FileContents ReadWholeFile(const std::string& path, std::uint64_t most) {
  std::error_code code;
  const fs::file_status status = fs::status(NativePath(path), code);
  if (!fs::exists(status)) {
    if (!code) code = std::make_error_code(std::errc::no_such_file_or_directory);
    return {.bytes = {}, .error = FileError(code, path, Use::kReading)};
  }
  if (fs::is_directory(status)) {
    return {.bytes = {}, .error = FileError(std::errc::is_a_directory, path, Use::kReading)};
  }
  if (!fs::is_regular_file(status)) {
    SystemError error = FileError(std::errc::invalid_argument, path, Use::kReading);
    return {.bytes = {}, .error = WithAdvice(std::move(error), Advice::kNotOrdinaryFile, {path})};
  }
  if (FileSize(path).value_or(0) > most) return {.bytes = {}, .error = TooLong(path, most)};
  std::FILE* file = OpenStdio(path, OpenMode::kRead);
  if (file == nullptr) return {.bytes = {}, .error = LastFileError(path, Use::kReading)};

  FileContents contents;
  std::size_t count = 1;  // the size is not relied on: the system makes up that of some files
  while (count > 0 && contents.bytes.size() <= most) {
    const std::size_t at = contents.bytes.size();
    contents.bytes.resize(at + kReadChunk);
    count = std::fread(contents.bytes.data() + at, 1, kReadChunk, file);
    contents.bytes.resize(at + count);
  }
  if (std::ferror(file) != 0) {
    contents.error = LastFileError(path, Use::kReading);
  } else if (contents.bytes.size() > most) {
    contents.error = TooLong(path, most);
  }
  std::fclose(file);
  if (contents.error) contents.bytes.clear();
  return contents;
}

SystemError WriteWholeFile(const std::string& path, std::string_view bytes) {
  NewFile file;
  if (const SystemError error = file.Open(path)) return error;
  return file.Commit(bytes);
}

SystemError NewFile::Open(const std::string& path) {
  GiveUp();
  path_ = path;
  target_ = LinkTarget(path);
  std::error_code code;
  const fs::file_status status = fs::status(NativePath(target_), code);
  if (fs::is_directory(status)) return FileError(std::errc::is_a_directory, path, Use::kWriting);
  if (fs::exists(status) && !fs::is_regular_file(status)) {
    file_ = OpenStdio(target_, OpenMode::kReplace);
  } else if (fs::exists(status) && !MayWrite(target_)) {
    // A file that is marked as read-only could be replaced all the same: that is not what the mark
    // means.
    return FileError(std::errc::permission_denied, path, Use::kWriting);
  } else {
    std::tie(temporary_, file_) = OpenTemporary(target_);
  }
  if (file_ != nullptr) return {};
  const SystemError error = LastFileError(path, Use::kWriting);
  temporary_.clear();
  return error;
}

SystemError NewFile::Commit(std::string_view bytes) {
  SystemError error = WriteAndSync(std::exchange(file_, nullptr), path_, bytes);
  if (temporary_.empty()) return error;
  std::error_code code;
  const fs::file_status status = fs::status(NativePath(target_), code);
  if (fs::exists(status)) fs::permissions(NativePath(temporary_), status.permissions(), code);
  if (!error) error = RenameFile(temporary_, target_);
  if (error) {
    GiveUp();
    error.subject = path_;
    return error;
  }
  temporary_.clear();
  SyncFolder(FolderAbove(target_));
  return {};
}

void NewFile::GiveUp() {
  if (file_ != nullptr) std::fclose(std::exchange(file_, nullptr));
  std::error_code code;
  if (!temporary_.empty()) fs::remove(NativePath(temporary_), code);
  temporary_.clear();
}

FileCopy KeepCopy(const std::string& path, const std::string& name) {
  const FileContents contents = ReadWholeFile(path);
  FileCopy copy{name, contents.error};
  if (copy.error) return copy;
  for (int number = 2; IsTaken(copy.path); ++number) {
    const FileContents other = ReadWholeFile(copy.path);
    if (!other.error && other.bytes == contents.bytes) return copy;
    copy.path = name + std::to_string(number);
  }
  copy.error = WriteWholeFile(copy.path, contents.bytes);
  copy.is_new = !copy.error;
  return copy;
}

FileCopy KeepFormer(const std::string& path, std::string_view bytes) {
  if (FileSize(path).value_or(0) == 0) return {};
  const FileContents former = ReadWholeFile(path);
  if (!former.error && former.bytes == bytes) return {};
  return KeepCopy(path, path + ".bak");
}

bool HaveSameContents(const std::string& a, const std::string& b) {
  const FileContents contents = ReadWholeFile(a);
  const FileContents others = ReadWholeFile(b);
  return !contents.error && !others.error && contents.bytes == others.bytes;
}

SystemError MakeFolders(const std::string& path) {
  std::error_code code;
  fs::create_directories(NativePath(path), code);
  if (!code && !IsFolder(path)) code = std::make_error_code(std::errc::not_a_directory);
  if (!code) return {};
  // Without a separator at its end, the folder above is the one in which it was to be made.
  return FileError(code, Utf8Path((NativePath(path) / "").parent_path()), Use::kWriting);
}

SystemError RenameFile(const std::string& from, const std::string& to) {
  std::error_code code;
  fs::rename(NativePath(from), NativePath(to), code);
  return code ? FileError(code, FileExists(from) ? to : from, Use::kWriting) : SystemError{};
}

SystemError RemoveFile(const std::string& path) {
  if (IsFolder(path)) return FileError(std::errc::is_a_directory, path, Use::kWriting);
  std::error_code code;
  fs::remove(NativePath(path), code);
  return code ? FileError(code, path, Use::kWriting) : SystemError{};
}

bool IsWritableFolder(const std::string& path) { return IsFolder(path) && MayWrite(path); }

std::vector<std::string> ListFolder(const std::string& path) {
  std::vector<std::string> names;
  std::error_code code;
  fs::directory_iterator at(NativePath(path), code);
  for (; !code && at != fs::directory_iterator(); at.increment(code)) {
    names.push_back(Utf8Path(at->path().filename()));
  }
  std::ranges::sort(names);
  return names;
}

SystemError FileWriter::Open(const std::string& path, WriteMode mode) {
  Close();
  path_ = path;
  error_ = {};
  if (IsFolder(path)) {
    error_ = FileError(std::errc::is_a_directory, path, Use::kWriting);
    return error_;
  }
  file_ = OpenStdio(path, mode == WriteMode::kAppend ? OpenMode::kAppend : OpenMode::kReplace);
  if (file_ == nullptr) KeepError();
  return error_;
}

void FileWriter::Write(std::string_view bytes) {
  if (file_ == nullptr || error_) return;
  if (std::fwrite(bytes.data(), 1, bytes.size(), file_) != bytes.size()) KeepError();
}

void FileWriter::WriteThrough(std::string_view bytes) {
  Write(bytes);
  if (file_ != nullptr && !error_ && std::fflush(file_) != 0) KeepError();
}

SystemError FileWriter::Flush() {
  if (file_ != nullptr && !error_ && (std::fflush(file_) != 0 || !SyncToDisk(file_))) KeepError();
  return error_;
}

SystemError FileWriter::Close() {
  if (file_ != nullptr && std::fclose(std::exchange(file_, nullptr)) != 0 && !error_) KeepError();
  return error_;
}

void FileWriter::KeepError() { error_ = LastFileError(path_, Use::kWriting); }

}  // namespace zep::platform
