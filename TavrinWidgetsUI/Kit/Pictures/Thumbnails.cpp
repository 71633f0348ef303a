#include "TavrinWidgetsUI/Kit/Pictures/Thumbnails.h"

#include "TavrinWidgetsUI/Kit/Pictures/Thumbnail.h"

#include <algorithm>

namespace tavrin {

namespace {

constexpr std::size_t mostWanted = 128;
/// What an entry takes without its points.
constexpr std::size_t entryBytes = 512;

std::size_t costOf(const QImage& picture) {
  return entryBytes + static_cast<std::size_t>(picture.sizeInBytes());
}

} // namespace

Thumbnails::Key Thumbnails::keyOf(const FolderFile& file, int side) {
  return {file.path.native(), file.date.secondsSinceReferenceDate, file.size, side};
}

QImage Thumbnails::find(const FolderFile& file, int side) {
  const Key key = keyOf(file, side);
  if (const auto found = places_.find(key); found != places_.end()) {
    entries_.splice(entries_.begin(), entries_, found->second);
    return found->second->picture;
  }
  std::erase(wanted_, key);
  if (wanted_.size() >= mostWanted)
    wanted_.erase(wanted_.begin());
  wanted_.push_back(key);
  makeNext();
  return {};
}

bool Thumbnails::hasFailed(const FolderFile& file, int side) const {
  const auto found = places_.find(keyOf(file, side));
  return found != places_.end() && found->second->picture.isNull();
}

void Thumbnails::makeNext() {
  if (isMaking_ || wanted_.empty())
    return;
  isMaking_ = true;
  const auto picture = std::make_shared<QImage>();
  const Key key = wanted_.back();
  wanted_.pop_back();
  runLoop_.background(
      [key, picture] {
        *picture = fileThumbnail(std::filesystem::path(std::get<0>(key)), std::get<3>(key));
      },
      alive_,
      [this, key, picture] {
        isMaking_ = false;
        keep(key, *picture);
        makeNext();
        if (onChange)
          onChange();
      });
}

void Thumbnails::keep(const Key& key, const QImage& picture) {
  std::erase(wanted_, key);
  if (places_.contains(key))
    return;
  entries_.push_front({key, picture});
  places_[key] = entries_.begin();
  bytes_ += costOf(picture);
  while (bytes_ > maximumBytes_ && entries_.size() > 1) {
    bytes_ -= costOf(entries_.back().picture);
    places_.erase(entries_.back().key);
    entries_.pop_back();
  }
}

} // namespace tavrin
