#pragma once

#include "TavrinCore/Base/Date.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

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

/// Calls `found` for each regular file named *.jsonl in `folder` and the folders below it, some
/// levels deep, with the name of the nearest folder above it that `isProject` takes (empty where
/// none does). Folders are not followed through links. What cannot be read is passed over.
void forEachUsageLog(const std::filesystem::path& folder,
                     const std::function<bool(std::string_view)>& isProject,
                     const std::function<void(const std::string& path, std::string_view project,
                                              const UsageLogState& state)>& found);

/// The state of an open file; a size of -1 where it is no regular file.
UsageLogState usageLogState(int descriptor);

} // namespace tavrin
