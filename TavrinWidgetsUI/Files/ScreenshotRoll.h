#pragma once

#include "TavrinCore/Kinds/Files/ScreenshotSettings.h"
#include "TavrinPlatform/UserFiles.h"
#include "TavrinWidgetsUI/Files/FolderRoll.h"
#include "TavrinWidgetsUI/Kit/Pictures/Thumbnails.h"

namespace tavrin {

/// The newest pictures of the screenshot folder, and small pictures of them.
class ScreenshotRoll {
public:
  /// The pixels of a small picture's longer side: for the tile and the panel alike.
  static constexpr int pictureSide = 256;

  ScreenshotRoll(FolderWatch& watch, UserFiles& files, RunLoop& runLoop);
  /// Begins to follow; again only where the settings differ.
  void setSettings(const ScreenshotSettings& settings);
  void refresh() { roll_.refresh(); }

  bool isKnown() const { return roll_.isKnown(); }
  FolderListing::State state() const;
  /// Empty while it is not known.
  std::filesystem::path folder() const;
  /// Newest first.
  const std::vector<FolderFile>& files() const { return roll_.listing().files; }
  /// Null until it is made, and for what is no picture.
  QImage picture(const FolderFile& file) { return thumbnails_.find(file, pictureSide); }
  bool isBroken(const FolderFile& file) const { return thumbnails_.hasFailed(file, pictureSide); }

  std::function<void()> onChange;

private:
  UserFiles& files_;
  FolderRoll roll_;
  Thumbnails thumbnails_;
  std::optional<ScreenshotSettings> settings_;
};

} // namespace tavrin
