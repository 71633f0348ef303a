#pragma once

#include "TavrinCore/Kinds/Files/Shelf.h"
#include "TavrinCore/Kinds/Files/ShelfSettings.h"
#include "TavrinWidgetsUI/Files/FolderRoll.h"
#include "TavrinWidgetsUI/Kit/Pictures/Thumbnails.h"

namespace tavrin {

struct ShelfItem {
  std::filesystem::path path;
  /// Missing, unless it is not known yet whether it is there.
  bool isMissing = false;
  /// What is known of it while it is there.
  std::optional<FolderFile> file;
  bool operator==(const ShelfItem&) const = default;
};

/// What lies on the shelf, and what became of it: the folders the files lie in are followed.
class ShelfModel {
public:
  static constexpr int pictureSide = 128;

  ShelfModel(FolderWatch& watch, RunLoop& runLoop);
  void setSettings(const ShelfSettings& settings);
  void refresh() { roll_.refresh(); }

  const ShelfSettings& settings() const { return settings_; }
  /// Newest first.
  const std::vector<ShelfItem>& items() const { return items_; }
  std::size_t missingCount() const;
  /// Null until it is made, and for what is no picture.
  QImage picture(const ShelfItem& item);

  std::function<void()> onChange;

private:
  void listed();

  FolderRoll roll_;
  Thumbnails thumbnails_;
  ShelfSettings settings_;
  std::vector<ShelfItem> items_;
};

} // namespace tavrin
