#pragma once

#include "TavrinCore/Base/Coding.h"

namespace tavrin {

/// An application in the Dock.
struct AppEntry {
  /// The application's file-system path, without a trailing slash.
  std::string path;
  std::optional<std::string> bundleIdentifier;
  std::optional<std::string> displayName;
  /// The Dock's whole tile dictionary as a binary property list.
  std::optional<Data> tile;

  static constexpr auto fields() {
    return std::tuple{
        required("path", &AppEntry::path).titled("Path"),
        optional("bundleIdentifier", &AppEntry::bundleIdentifier).titled("Bundle identifier"),
        optional("displayName", &AppEntry::displayName).titled("Name"),
        optional("tile", &AppEntry::tile).titled("Dock tile")};
  }
  bool operator==(const AppEntry&) const = default;
};

} // namespace tavrin
