#pragma once

#include <filesystem>

namespace tavrin {

/// What the desktop does with the user's files.
class UserFiles {
public:
  virtual ~UserFiles() = default;

  virtual std::filesystem::path homeFolder() const = 0;
  /// Where downloads go. This and the next may read files and ask programs: off the main thread,
  /// from any thread.
  virtual std::filesystem::path downloadsFolder() const = 0;
  /// Where the desktop's screenshot program puts its pictures.
  virtual std::filesystem::path screenshotFolder() const = 0;
  /// Puts a file where it can be got back from; false where that cannot be done. Off the main
  /// thread.
  virtual bool moveToTrash(const std::filesystem::path& file) = 0;
  /// Puts back what was moved to the trash from that path last; false where it is not there any
  /// more, or something else has its place. Off the main thread.
  virtual bool restoreFromTrash(const std::filesystem::path&) { return false; }

  /// Opens a file or a folder with what the user has for it.
  virtual void open(const std::filesystem::path& file) = 0;
  /// Shows the file in the desktop's file manager, selected where that can be.
  virtual void reveal(const std::filesystem::path& file) = 0;
};

} // namespace tavrin
