#pragma once

#include "TavrinCore/Base/Date.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace tavrin {

/// What tells whether a log is the file it was, and whether it changed.
struct UsageLogState {
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  std::int64_t size = 0;
  Date modified;

  bool isSameFile(const UsageLogState& other) const {
    return device == other.device && inode == other.inode;
  }
  bool operator==(const UsageLogState&) const = default;
};

/// The regular files named *.jsonl in a folder and the folders below it, some levels deep. Folders
/// are not followed through links; what cannot be read is passed over. A folder's names are read
/// again only when they can have changed, a file's state each time.
class UsageLogFolder {
public:
  using IsProject = std::function<bool(std::string_view name)>;
  using Found = std::function<void(const std::string& path, const std::string& project,
                                   const UsageLogState& state)>;

  /// A file's project is the name of the nearest folder above it that `isProject` takes, empty
  /// where none does.
  UsageLogFolder(const std::filesystem::path& folder, IsProject isProject);

  void forEachLog(const Found& found);

private:
  struct Log {
    std::string name;
    std::string path;
  };
  struct Folder {
    std::string path;
    std::string project;
    /// As it was when its names were read; settled when a later change must show in it.
    UsageLogState state{};
    bool isSettled = false;
    std::vector<Log> logs{};
    std::vector<Folder> folders{};
  };

  void visit(Folder& folder, int descriptor, int level, const Found& found);
  bool readNames(Folder& folder, int descriptor, int level);

  IsProject isProject_;
  Folder root_;
};

/// The state of an open file; a size of -1 where it is no regular file.
UsageLogState usageLogState(int descriptor);

/// Whether a later change of a file that was changed at `modified` must show in its date: not
/// while the clock that stamps files still stands there.
bool isSettled(Date modified);

} // namespace tavrin
