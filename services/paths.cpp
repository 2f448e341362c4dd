#include "services/paths.h"

#include "platform/files.h"
#include "platform/program_paths.h"

namespace zep::services {
namespace {

// Windows takes both.
bool IsSeparator(char character) {
  constexpr std::string_view separators = kPathSeparator == '/' ? "/" : "\\/";
  return separators.find(character) != std::string_view::npos;
}

bool EndsWithSeparator(std::string_view folder) {
  return !folder.empty() && IsSeparator(folder.back());
}

// Without the separator at its end, but the root of a file system or a drive keeps it.
std::string WithoutSeparator(std::string_view folder) {
  while (folder.size() > 1 && EndsWithSeparator(folder) && folder[folder.size() - 2] != ':')
    folder.remove_suffix(1);
  return std::string(folder);
}

std::string::size_type StartOfTitle(std::string_view path) {
  std::size_t at = path.size();
  while (at > 0 && !IsSeparator(path[at - 1])) --at;
  return at;
}

// Where an installed program's shared data is: PREFIX/bin/program finds PREFIX/share/zepdlca.
std::string SharedDataFolder(const std::string& program_folder) {
  const std::string prefix = WithoutSeparator(FolderOf(program_folder));
  return AppMakePath(AppMakePath(prefix, "share"), "zepdlca");
}

std::string FindApplicationFolder(const std::string& program_folder) {
  const bool is_installed = platform::IsFolder(SharedDataFolder(program_folder));
  if (!is_installed && platform::IsWritableFolder(program_folder)) return program_folder;
  std::string user_folder = platform::UserDataFolder();
  if (user_folder.empty() || platform::MakeFolders(user_folder)) return program_folder;
  return user_folder;
}

}  // namespace

ApplicationPaths FindApplicationPaths(const std::string& given_application_folder) {
  ApplicationPaths paths;
  paths.program_folder = WithoutSeparator(platform::ProgramFolder());
  paths.application_folder = given_application_folder.empty()
                                 ? FindApplicationFolder(paths.program_folder)
                                 : WithoutSeparator(given_application_folder);
  return paths;
}

std::string AppMakePath(std::string_view folder, std::string_view name) {
  std::string path(folder);
  if (!EndsWithSeparator(path)) path += kPathSeparator;
  return path.append(name);
}

std::string WithSeparator(std::string_view folder) {
  return folder.empty() ? std::string() : AppMakePath(folder, "");
}

bool IsAbsolute(std::string_view path) {
#ifdef _WIN32
  return path.starts_with(R"(\\)") || (path.size() >= 2 && path[1] == ':');
#else
  return path.starts_with('/');
#endif
}

std::string PathOf(std::string_view folder, std::string_view name) {
  return IsAbsolute(name) ? std::string(name) : WithSeparator(folder).append(name);
}

std::string FolderOf(std::string_view path) {
  return std::string(path.substr(0, StartOfTitle(path)));
}

std::string FileTitleOf(std::string_view path) {
  return std::string(path.substr(StartOfTitle(path)));
}

std::string FindApplicationFile(const ApplicationPaths& paths, std::string_view name) {
  std::string at_home = AppMakePath(paths.application_folder, name);
  for (const std::string& path : {at_home, AppMakePath(paths.program_folder, name),
                                  AppMakePath(SharedDataFolder(paths.program_folder), name)}) {
    if (platform::FileExists(path)) return path;
  }
  return at_home;
}

}  // namespace zep::services
