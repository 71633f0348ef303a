#include "TavrinPlatform/Linux/Files/LinuxFileManager.h"

#include "TavrinCore/Base/Errors.h"

#include <pwd.h>
#include <string_view>
#include <unistd.h>
#include <vector>

extern char** environ;

namespace tavrin {

namespace {

LinuxFileManager::Environment currentEnvironment() {
  LinuxFileManager::Environment variables;
  for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
    const std::string_view text = *entry;
    const auto equals = text.find('=');
    if (equals != std::string_view::npos)
      variables.emplace(text.substr(0, equals), text.substr(equals + 1));
  }
  return variables;
}

std::string homeOfAccount() {
  std::vector<char> buffer(16 * 1024);
  passwd entry{};
  passwd* found = nullptr;
  if (getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || found == nullptr)
    return {};
  return entry.pw_dir;
}

} // namespace

LinuxFileManager::LinuxFileManager() : environment_(currentEnvironment()) {}
LinuxFileManager::LinuxFileManager(Environment environment)
    : environment_(std::move(environment)) {}

std::filesystem::path LinuxFileManager::homeFolder() const {
  const auto home = environment("HOME");
  return home && home->starts_with('/') ? *home : homeOfAccount();
}

std::filesystem::path LinuxFileManager::applicationSupportFolder() const {
  return folder("XDG_DATA_HOME", ".local/share");
}

std::filesystem::path LinuxFileManager::cachesFolder() const {
  return folder("XDG_CACHE_HOME", ".cache");
}

std::filesystem::path LinuxFileManager::stateFolder() const {
  return folder("XDG_STATE_HOME", ".local/state");
}

std::filesystem::path LinuxFileManager::configurationFolder() const {
  return folder("XDG_CONFIG_HOME", ".config");
}

std::optional<std::string> LinuxFileManager::environment(const std::string& name) const {
  const auto found = environment_.find(name);
  if (found == environment_.end())
    return std::nullopt;
  return found->second;
}

std::vector<std::filesystem::path> LinuxFileManager::toolFolders() const {
  const auto home = homeFolder();
  return {"/opt/homebrew/bin",
          "/usr/local/bin",
          "/opt/local/bin",
          home / ".local/bin",
          "/usr/bin",
          "/bin",
          "/snap/bin",
          "/home/linuxbrew/.linuxbrew/bin",
          home / ".linuxbrew/bin",
          home / "bin",
          home / ".nix-profile/bin",
          "/run/current-system/sw/bin"};
}

std::filesystem::path LinuxFileManager::unicodeFolder() const {
  return environment("TAVRIN_UNICODE_DIR").value_or("/usr/share/unicode");
}

std::filesystem::path LinuxFileManager::folder(const char* variable, const char* underHome) const {
  const auto value = environment(variable);
  if (value && value->starts_with('/'))
    return *value;
  const auto home = homeFolder();
  if (home.empty())
    throw FileError(failure("find the user's folders", "this account has no home folder"));
  return home / underHome;
}

} // namespace tavrin
