#pragma once

#include "TavrinPlatform/POSIX/NewestFiles.h"

#include <functional>
#include <set>
#include <string>
#include <sys/stat.h>

namespace tavrin {

/// One folder as it was last looked at, and how it is being watched. For one thread.
class FolderPlace {
public:
  FolderPlace(std::filesystem::path folder, const FolderRequest& request)
      : folder_(std::move(folder)), request_(request), files_(request.limit) {}

  const std::filesystem::path& folder() const { return folder_; }
  FolderListing::State state() const { return state_; }
  const NewestFiles& files() const { return files_; }
  std::size_t unfinished() const { return unfinished_.size(); }

  /// Looks at every name in the folder; `isStopped` ends that early.
  void scan(const std::function<bool()>& isStopped);
  /// Looks at the one file of this name, whatever became of it.
  void look(const std::string& name);
  /// Whether the folder's path still leads to what was scanned, and nothing came or went since.
  bool isUnchanged() const;
  /// Whether the path leads to the folder that was scanned.
  bool isSameFolder() const;

  /// Its watch; -1 for none.
  int watch = -1;
  /// The watch of the nearest folder above that is there, while this one is not, and the name in
  /// it that leads on; -1 for none.
  int above = -1;
  std::string awaited;
  /// Nobody tells of its changes.
  bool isPolled = false;
  /// Stands in the list under another path already.
  bool isDouble = false;
  /// The names that changed since they were looked at.
  std::set<std::string> touched;
  bool needsScan = false;
  /// On the steady clock, in seconds: no scan before.
  double nextScan = 0;

private:
  void put(const std::string& name, const struct stat& info, bool isKnownNew);
  bool isWanted(const struct stat& info) const;

  std::filesystem::path folder_;
  const FolderRequest& request_;
  FolderListing::State state_ = FolderListing::State::missing;
  NewestFiles files_;
  std::set<std::string> unfinished_;
  struct stat scanned_ {};
};

} // namespace tavrin
