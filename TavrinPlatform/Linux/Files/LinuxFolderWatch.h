#pragma once

#include "TavrinPlatform/FolderWatch.h"
#include "TavrinPlatform/RunLoop.h"

namespace tavrin {

/// Folders followed by inotify, each follower on a thread of its own: one that hangs in a file
/// system holds up nobody and is left to itself when its follower goes.
class LinuxFolderWatch final : public FolderWatch {
public:
  explicit LinuxFolderWatch(RunLoop& runLoop) : runLoop_(runLoop) {}
  std::unique_ptr<FolderFollower> follow(FolderRequest request,
                                         std::function<void(const FolderListing&)> told) override;

private:
  RunLoop& runLoop_;
};

} // namespace tavrin
