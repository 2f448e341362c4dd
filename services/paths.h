// Where the program finds and keeps its files. Folders are UTF-8 texts without a trailing separator
// unless said so.
#pragma once

#include <string>
#include <string_view>

namespace zep::services {

#ifdef _WIN32
inline constexpr char kPathSeparator = '\\';
#else
inline constexpr char kPathSeparator = '/';
#endif

struct ApplicationPaths {
  std::string application_folder;  // upgrade/, upgrade.log, the loader files, saved databases
  std::string program_folder;  // the running program's folder; loader files are looked for here too
};

// The application folder is the program's own when it can be written to (a portable copy), else the
// user's data folder, which is made when missing; an installed program always takes the latter,
// whoever runs it. A folder given by the user takes its place and is used as it is.
ApplicationPaths FindApplicationPaths(const std::string& given_application_folder);

// The folder, a separator unless it ends with one, and the name.
std::string AppMakePath(std::string_view folder, std::string_view name);

// The folder with a trailing separator; an empty one stays empty.
std::string WithSeparator(std::string_view folder);

// Whether the path begins at a root, on Windows at a drive or a network share.
bool IsAbsolute(std::string_view path);

// The full name of a file that is given with its folder, or by a full name of its own.
std::string PathOf(std::string_view folder, std::string_view name);

// Everything up to and including the last separator; empty when there is none. And what follows it.
std::string FolderOf(std::string_view path);
std::string FileTitleOf(std::string_view path);

// The full name of a file that the program brings with it or the user supplies (bs.tsk, dl.tsk,
// ZEPDLCA.mld): in the application folder, else in the program's folder, else in the shared data
// folder of an installed program. The name in the application folder when it is nowhere.
std::string FindApplicationFile(const ApplicationPaths& paths, std::string_view name);

}  // namespace zep::services
