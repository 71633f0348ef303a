#pragma once

#include "TavrinPlatform/FolderWatch.h"
#include "TavrinPlatform/RunLoop.h"

namespace tavrin {

/// FSEvents tell which file changed. Folders that are not there, that were replaced, or of whose
/// changes nobody tells are looked at every few seconds.
class MacFolderWatch final : public FolderWatch {
public:
  explicit MacFolderWatch(RunLoop& runLoop) : runLoop_(runLoop) {}

  [[nodiscard]] std::unique_ptr<FolderFollower>
  follow(FolderRequest request, std::function<void(const FolderListing&)> told) override;

private:
  RunLoop& runLoop_;
};

} // namespace tavrin
