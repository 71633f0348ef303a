#include "TavrinPlatform/POSIX/NewestFiles.h"

#include <algorithm>

namespace tavrin {

bool NewestFiles::isNewer(const FolderFile& a, const FolderFile& b) {
  return a.date != b.date ? a.date > b.date : a.path.native() > b.path.native();
}

void NewestFiles::clear() {
  files_.clear();
  floor_.reset();
}

void NewestFiles::drop(const FolderFile& file) {
  if (!floor_ || isNewer(file, *floor_))
    floor_ = file;
}

void NewestFiles::put(FolderFile file) {
  remove(file.path);
  add(std::move(file));
}

void NewestFiles::add(FolderFile file) {
  const bool isFull = files_.size() >= capacity_;
  if ((floor_ && !isNewer(file, *floor_)) || (isFull && !isNewer(file, files_.back()))) {
    drop(file);
    return;
  }
  if (isFull) {
    drop(files_.back());
    files_.pop_back();
  }
  const auto place = std::ranges::upper_bound(files_, file, isNewer);
  files_.insert(place, std::move(file));
}

void NewestFiles::remove(const std::filesystem::path& path) {
  std::erase_if(files_, [&](const FolderFile& file) { return file.path == path; });
}

} // namespace tavrin
