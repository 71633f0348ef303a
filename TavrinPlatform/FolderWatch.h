#pragma once

#include "TavrinCore/Base/Date.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string_view>
#include <vector>

namespace tavrin {

struct FolderFile {
  std::filesystem::path path;
  /// When it came or changed last, as the request's order has it. A date that somebody set on the
  /// file counts only as far as it is past.
  Date date;
  std::uint64_t size = 0;
  bool isFolder = false;
  bool operator==(const FolderFile&) const = default;
};

enum class FolderEntry { ignored, wanted, unfinished };

struct FolderRequest {
  enum class Order {
    /// When the file came into the folder, was renamed, or changed in any way.
    arrival,
    /// When its contents changed.
    modification,
  };

  /// Which folders; those inside them are left alone.
  std::vector<std::filesystem::path> folders;
  /// What a file of this name is; asked off the main thread, perhaps even after the follower has
  /// gone. Null wants all.
  std::function<FolderEntry(std::string_view name)> classify;
  /// Of all wanted files in all folders the newest are told.
  std::size_t limit = 20;
  Order order = Order::arrival;
  bool includesFolders = false;
};

struct FolderListing {
  enum class State { listed, missing, unreadable };
  struct Folder {
    std::filesystem::path path;
    State state = State::listed;
    bool operator==(const Folder&) const = default;
  };

  std::vector<Folder> folders;
  /// Newest first; what links lead to counts, and only regular files (and folders, if asked for).
  std::vector<FolderFile> files;
  /// How many unfinished files there are.
  std::size_t unfinished = 0;
  bool operator==(const FolderListing&) const = default;
};

/// One folder or a few being followed; ends when destroyed.
class FolderFollower {
public:
  virtual ~FolderFollower() = default;
  /// Looks for the folders and at their files anew; for folders that tell of no changes, such as
  /// those on other computers.
  virtual void refresh() = 0;
};

/// Folders whose newest files are known at any time. Files are looked at off the main thread and
/// never opened; memory is bounded by the limit, not by the folder.
class FolderWatch {
public:
  virtual ~FolderWatch() = default;
  /// Tells the listing on the main thread, first soon, then after every change of it. Changes that
  /// come thick are told together, twice a second.
  [[nodiscard]] virtual std::unique_ptr<FolderFollower>
  follow(FolderRequest request, std::function<void(const FolderListing&)> told) = 0;
};

} // namespace tavrin
