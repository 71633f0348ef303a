#pragma once

#include "TavrinPlatform/POSIX/FolderPlace.h"

#include <atomic>
#include <cstdint>
#include <list>

namespace tavrin {

/// Follows folders on a thread of its own. The kernel tells of changes by name, so that a change
/// costs a look at one file, not at the folder.
class FolderWorker {
public:
  /// `tell` is called on the worker's thread.
  FolderWorker(FolderRequest request, std::function<void(const FolderListing&)> tell);
  ~FolderWorker();
  FolderWorker(const FolderWorker&) = delete;
  FolderWorker& operator=(const FolderWorker&) = delete;

  /// Returns after `stop`.
  void run();
  /// From any thread.
  void stop();
  void refresh();

private:
  void wake() const;
  bool wait(double seconds, bool forChanges) const;
  double patience() const;
  void seekFolders();
  void seek(FolderPlace& place);
  void watchAbove(FolderPlace& place);
  void forget(FolderPlace& place);
  void release(int& watch);
  void collect();
  void changed(int watch, std::uint32_t what, const char* name);
  void apply();
  void scan(FolderPlace& place);
  void tellIfChanged();

  FolderRequest request_;
  std::function<void(const FolderListing&)> tell_;
  int inotify_;
  int wake_;
  std::atomic<bool> isStopped_ = false;
  std::atomic<bool> isToRefresh_ = false;
  std::list<FolderPlace> places_;
  FolderListing told_;
  bool hasTold_ = false;
};

} // namespace tavrin
