#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace tavrin {

/// The value of `key` in "user-dirs.dirs" (xdg-user-dirs), such as "XDG_DOWNLOAD_DIR", with $HOME
/// filled in. No value where it is not set, or not as that file has it.
std::optional<std::filesystem::path> userFolderIn(std::string_view file, std::string_view key,
                                                  const std::filesystem::path& home);

/// The value of `key` in a group of a settings file of the "[Group]" and "key=value" kind; an empty
/// group is what stands before the first. A key marked "[$e]" has $HOME filled in.
std::optional<std::string> settingIn(std::string_view file, std::string_view group,
                                     std::string_view key, const std::filesystem::path& home);

} // namespace tavrin
