#pragma once

#include <string>
#include <string_view>

namespace tavrin {

/// Addresses as the Dock's tiles hold them.
struct DockURLString {
  /// "_CFURLStringType" of an absolute address.
  static constexpr int urlStringType = 15;

  /// "file:///Applications/Mail.app/"; a folder's address ends in a slash. A relative path is
  /// taken from the root.
  static std::string fileURLString(std::string_view path, bool isDirectory);
  /// The path that a file address leads to, any other text as it is; normalized.
  static std::string path(std::string_view text);
  /// Without the slashes at the end; "/" stays.
  static std::string normalize(std::string_view path);
};

} // namespace tavrin
