#pragma once

#include "TavrinCore/Base/Lifetime.h"
#include "TavrinPlatform/FolderWatch.h"
#include "TavrinPlatform/RunLoop.h"

namespace tavrin {

/// The newest files of some folders, kept up to date.
class FolderRoll {
public:
  using Folders = std::function<std::vector<std::filesystem::path>()>;

  FolderRoll(FolderWatch& watch, RunLoop& runLoop) : watch_(watch), runLoop_(runLoop) {}

  /// Follows what `request` says from now on, in the folders that `folders` finds off the main
  /// thread. What was listed before stays until something is known.
  void follow(FolderRequest request, Folders folders);
  /// Looks anew: the folders themselves may be others by now. Nothing before the first `follow`.
  void refresh() {
    if (folders_)
      seek();
  }

  /// Whether the folders have been looked at.
  bool isKnown() const { return isKnown_; }
  const FolderListing& listing() const { return listing_; }

  std::function<void()> onChange;

private:
  void seek();
  void found(std::vector<std::filesystem::path> folders);

  FolderWatch& watch_;
  RunLoop& runLoop_;
  FolderRequest request_;
  Folders folders_;
  bool isKnown_ = false;
  FolderListing listing_;
  std::unique_ptr<FolderFollower> follower_;
  /// Of the last search; one that was overtaken finds it gone.
  Lifetime search_;
};

} // namespace tavrin
