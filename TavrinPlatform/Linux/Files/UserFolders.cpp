#include "TavrinPlatform/Linux/Files/UserFolders.h"

#include "TavrinCore/Text/Text.h"

namespace tavrin {

namespace {

constexpr std::string_view homeVariable = "$HOME";

/// The next line of `text`, without white space at its ends; takes it off.
std::string_view nextLine(std::string_view& text) {
  const auto line = takeLine(text);
  return isUTF8(line) ? trimmed(line) : std::string_view();
}

/// What stands between the quotation marks at both ends, its backslashes undone.
std::optional<std::string> unquoted(std::string_view text) {
  if (text.size() < 2 || !text.starts_with('"') || !text.ends_with('"'))
    return std::nullopt;
  text = text.substr(1, text.size() - 2);
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\\' && ++i == text.size())
      return std::nullopt;
    result += text[i];
  }
  return result;
}

} // namespace

std::optional<std::filesystem::path> userFolderIn(std::string_view file, std::string_view key,
                                                  const std::filesystem::path& home) {
  std::optional<std::filesystem::path> found;
  while (!file.empty()) {
    const auto line = nextLine(file);
    const auto equals = line.find('=');
    if (equals == std::string_view::npos || trimmed(line.substr(0, equals)) != key)
      continue;
    auto value = unquoted(trimmed(line.substr(equals + 1)));
    if (value && (*value == homeVariable || value->starts_with("$HOME/")))
      value = home.native() + value->substr(homeVariable.size());
    if (value && value->starts_with('/') && value->find('\0') == std::string::npos)
      found = *value;
  }
  return found;
}

std::optional<std::string> settingIn(std::string_view file, std::string_view group,
                                     std::string_view key, const std::filesystem::path& home) {
  constexpr std::string_view expands = "[$e]";
  bool isInGroup = group.empty();
  while (!file.empty()) {
    const auto line = nextLine(file);
    if (line.starts_with('[') && line.ends_with(']')) {
      isInGroup = line.substr(1, line.size() - 2) == group;
      continue;
    }
    const auto equals = line.find('=');
    if (!isInGroup || equals == std::string_view::npos)
      continue;
    auto name = trimmed(line.substr(0, equals));
    const bool isExpanded = name.ends_with(expands);
    if (isExpanded)
      name.remove_suffix(expands.size());
    if (name != key)
      continue;
    std::string value(trimmed(line.substr(equals + 1)));
    if (const auto at = isExpanded ? value.find(homeVariable) : std::string::npos;
        at != std::string::npos)
      value.replace(at, homeVariable.size(), home.native());
    return value;
  }
  return std::nullopt;
}

} // namespace tavrin
