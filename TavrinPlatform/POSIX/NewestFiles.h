#pragma once

#include "TavrinPlatform/FolderWatch.h"

#include <optional>

namespace tavrin {

/// The newest files of one folder, however many it has. Holds all that are newer than the newest
/// one it had to drop, and some more than asked for, so that a removal seldom asks for a new look.
class NewestFiles {
public:
  explicit NewestFiles(std::size_t limit) : limit_(limit), capacity_(2 * limit + 32) {}

  void clear();
  /// A file that is not in the list yet.
  void add(FolderFile file);
  /// A file that is there, new or changed.
  void put(FolderFile file);
  void remove(const std::filesystem::path& path);
  /// Newest first; more than the limit, perhaps.
  const std::vector<FolderFile>& files() const { return files_; }
  /// Whether files that were dropped belong into the list by now.
  bool isShort() const { return floor_.has_value() && files_.size() < limit_; }

  /// The order of the list: the newer first, of two of the same time the one with the later name.
  static bool isNewer(const FolderFile& a, const FolderFile& b);

private:
  void drop(const FolderFile& file);

  std::size_t limit_;
  std::size_t capacity_;
  std::vector<FolderFile> files_;
  /// The newest file that was dropped.
  std::optional<FolderFile> floor_;
};

} // namespace tavrin
