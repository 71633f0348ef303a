#pragma once

#include "TavrinCore/Kinds/Files/FilesSettings.h"
#include "TavrinPlatform/UserFiles.h"
#include "TavrinWidgetsUI/Files/FolderRoll.h"
#include "TavrinWidgetsUI/Kit/Pictures/Thumbnails.h"

namespace tavrin {

/// The newest files of the chosen folders, which of them the user has not seen, and small pictures
/// of those that are pictures.
class FileRoll {
public:
  static constexpr int pictureSide = 64;

  FileRoll(FolderWatch& watch, UserFiles& files, RunLoop& runLoop);
  /// Begins to follow; again only where folders or limit differ.
  void setSettings(const FilesSettings& settings);
  void refresh() { roll_.refresh(); }

  bool isKnown() const { return roll_.isKnown(); }
  const std::vector<FolderListing::Folder>& folders() const { return roll_.listing().folders; }
  /// The first folder that cannot be listed, where none can.
  const FolderListing::Folder* trouble() const;
  /// Newest first. An empty file does not count while something is being downloaded: browsers
  /// keep a download's place with one.
  const std::vector<FolderFile>& files() const { return shown_; }
  /// How many downloads go on.
  std::size_t unfinished() const { return roll_.listing().unfinished; }
  bool isUnseen(const FolderFile& file) const;
  std::size_t unseenCount() const;
  /// There are more unseen ones than are listed.
  bool hasMoreUnseen() const { return next_ && isUnseen(*next_); }
  /// The settings with everything that is listed seen, `now` at the latest.
  FilesSettings seen(Date now) const;

  /// Keeps the marks as they are now, for a panel that shows them while everything in it counts as
  /// seen; until `releaseMarks`.
  void holdMarks();
  void releaseMarks() { held_.reset(); }
  /// What the panel marks.
  bool isMarked(const FolderFile& file) const;
  bool hasMoreMarked() const { return next_ && isMarked(*next_); }

  /// Null until it is made, and for what is no picture.
  QImage picture(const FolderFile& file);

  std::function<void()> onChange;

private:
  void listed();
  bool isAfter(const FolderFile& file, const std::optional<Date>& seenUntil) const;

  UserFiles& files_;
  FolderRoll roll_;
  Thumbnails thumbnails_;
  std::optional<FilesSettings> settings_;
  std::vector<FolderFile> shown_;
  /// The newest of those there is no room for.
  std::optional<FolderFile> next_;
  /// What `seenUntil` was when the panel opened.
  std::optional<std::optional<Date>> held_;
};

} // namespace tavrin
