#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

namespace tavrin {

/// What only the system can say of a value. A function that is empty leaves its question open:
/// nothing is refused or marked for it.
struct SettingSystem {
  /// What "~" stands for.
  std::filesystem::path home;
  std::function<bool(const std::string& identifier)> isTimeZone = {};
  std::function<bool(std::string_view name)> isSymbol = {};
  std::function<bool(const std::filesystem::path& path)> isFolder = {};
  std::function<bool(const std::filesystem::path& path)> isFile = {};
};

} // namespace tavrin
