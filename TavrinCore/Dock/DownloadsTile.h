#pragma once

#include "TavrinCore/Dock/DockItem.h"
#include "TavrinCore/Dock/DockURLString.h"

#include <filesystem>

namespace tavrin {

/// The user's Downloads folder as a Dock item.
struct DownloadsTile {
  /// The folder, normalized.
  std::string path;

  /// `downloads` is the folder the desktop names, when it names one.
  DownloadsTile(const std::optional<std::filesystem::path>& downloads,
                const std::filesystem::path& homeFolder)
      : path(DockURLString::normalize(downloads.value_or(homeFolder / "Downloads").string())) {}

  FileEntry entry() const {
    return {.path = path,
            .displayName = std::nullopt,
            .isDirectory = true,
            .tile = std::nullopt,
            .badgeColorHex = std::nullopt};
  }
  bool is(std::string_view other) const { return DockURLString::normalize(other) == path; }
  bool is(const DockItem& item) const { return item.file() != nullptr && is(item.file()->path); }
  bool contains(const std::vector<DockItem>& items) const {
    for (const auto& item : items)
      if (is(item))
        return true;
    return false;
  }
  /// With the folder at the end unless it is there already.
  std::vector<DockItem> adding(std::vector<DockItem> items) const {
    if (!contains(items))
      items.push_back({entry()});
    return items;
  }
  std::vector<DockItem> removing(std::vector<DockItem> items) const {
    std::erase_if(items, [this](const DockItem& item) { return is(item); });
    return items;
  }
};

} // namespace tavrin
