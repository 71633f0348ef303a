#include "TavrinWidgetsUI/Files/FolderRoll.h"

namespace tavrin {

void FolderRoll::follow(FolderRequest request, Folders folders) {
  request_ = std::move(request);
  folders_ = std::move(folders);
  follower_.reset();
  seek();
}

void FolderRoll::seek() {
  search_.renew();
  const auto result = std::make_shared<std::vector<std::filesystem::path>>();
  runLoop_.background([result, folders = folders_] { *result = folders(); }, search_,
                      [this, result] { found(std::move(*result)); });
}

void FolderRoll::found(std::vector<std::filesystem::path> folders) {
  if (follower_ && folders == request_.folders) {
    follower_->refresh();
    return;
  }
  request_.folders = std::move(folders);
  follower_ = watch_.follow(request_, [this](const FolderListing& listing) {
    isKnown_ = true;
    listing_ = listing;
    if (onChange)
      onChange();
  });
}

} // namespace tavrin
