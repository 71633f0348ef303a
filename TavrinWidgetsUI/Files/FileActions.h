#pragma once

#include "TavrinCore/Base/Lifetime.h"
#include "TavrinPlatform/Pasteboard.h"
#include "TavrinPlatform/UserFiles.h"

namespace tavrin {

/// What can be done with the files that a panel lists. Whatever reads or moves a file runs off the
/// main thread.
class FileActions {
public:
  FileActions(UserFiles& files, Pasteboard& pasteboard, RunLoop& runLoop)
      : files_(files), pasteboard_(pasteboard), runLoop_(runLoop) {}

  void open(const std::filesystem::path& file) { files_.open(file); }
  void reveal(const std::filesystem::path& file) { files_.reveal(file); }
  /// The files themselves, for file managers and letters.
  void copy(const std::vector<std::filesystem::path>& files);
  /// The picture as a PNG, for image editors and letters, and the file beside it. A file that is no
  /// picture is copied as a file.
  void copyPicture(const std::filesystem::path& file);
  void moveToTrash(const std::filesystem::path& file, std::function<void(bool isDone)> done);
  /// Puts back what came from that path last.
  void restoreFromTrash(const std::filesystem::path& file, std::function<void(bool isDone)> done);

private:
  UserFiles& files_;
  Pasteboard& pasteboard_;
  RunLoop& runLoop_;
  Lifetime alive_;
};

} // namespace tavrin
