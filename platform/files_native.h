// The few calls for files that differ from system to system. Only files.cpp and its like use them;
// errors are left in errno.
#pragma once

#include <cstdio>
#include <filesystem>
#include <string>

namespace zep::platform {

// A name as the system's own calls take it, and back.
std::filesystem::path NativePath(const std::string& utf8);
std::string Utf8Path(const std::filesystem::path& path);

// kNew fails when the file exists.
enum class OpenMode { kRead, kReplace, kAppend, kNew };

// Null on failure. Programs that are started do not inherit the file.
std::FILE* OpenStdio(const std::string& path, OpenMode mode);

// Returns when all that was written to the open file is on the disk; false on failure.
bool SyncToDisk(std::FILE* file);

// Makes the names in a folder safe as well, where that takes a call of its own.
void SyncFolder(const std::string& folder);

// Whether this user may write to the file, or make files in the folder.
bool MayWrite(const std::string& path);

// This process, for names of temporary files.
int ProcessNumber();

}  // namespace zep::platform
