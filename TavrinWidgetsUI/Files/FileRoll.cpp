#include "TavrinWidgetsUI/Files/FileRoll.h"

#include "TavrinCore/Base/FileURL.h"
#include "TavrinCore/Kinds/Files/FileKind.h"

#include <algorithm>

namespace tavrin {

namespace {

constexpr std::size_t mostFolders = 32;

std::size_t limitOf(const FilesSettings& settings) {
  return static_cast<std::size_t>(std::clamp(settings.limit, 1, 100));
}

FolderEntry classify(std::string_view name) {
  if (isPartialDownload(name))
    return FolderEntry::unfinished;
  return isHiddenName(name) ? FolderEntry::ignored : FolderEntry::wanted;
}

} // namespace

FileRoll::FileRoll(FolderWatch& watch, UserFiles& files, RunLoop& runLoop)
    : files_(files), roll_(watch, runLoop), thumbnails_(runLoop) {
  roll_.onChange = [this] { listed(); };
  thumbnails_.onChange = [this] {
    if (onChange)
      onChange();
  };
}

void FileRoll::setSettings(const FilesSettings& settings) {
  const bool isOther =
      !settings_ || settings_->folders != settings.folders || settings_->limit != settings.limit;
  settings_ = settings;
  if (!isOther)
    return;
  FolderRequest request;
  // One more tells whether there are more.
  request.limit = limitOf(settings) + 1;
  request.classify = classify;
  roll_.follow(std::move(request), [&files = files_, chosen = settings.folders] {
    std::vector<std::filesystem::path> folders;
    for (const auto& text : chosen)
      if (folders.size() < mostFolders)
        folders.push_back(pathOfText(text, files.homeFolder()).value_or(text));
    if (folders.empty())
      folders.push_back(files.downloadsFolder());
    return folders;
  });
}

void FileRoll::listed() {
  shown_ = roll_.listing().files;
  if (unfinished() > 0)
    std::erase_if(shown_, [](const FolderFile& file) { return file.size == 0; });
  next_.reset();
  if (const auto limit = limitOf(settings_.value_or(FilesSettings{})); shown_.size() > limit) {
    next_ = shown_[limit];
    shown_.resize(limit);
  }
  if (onChange)
    onChange();
}

const FolderListing::Folder* FileRoll::trouble() const {
  const auto isListed = [](const auto& folder) {
    return folder.state == FolderListing::State::listed;
  };
  if (folders().empty() || std::ranges::any_of(folders(), isListed))
    return nullptr;
  return &folders().front();
}

bool FileRoll::isAfter(const FolderFile& file, const std::optional<Date>& seenUntil) const {
  return settings_ && settings_->marksUnseen && (!seenUntil || file.date > *seenUntil);
}

bool FileRoll::isUnseen(const FolderFile& file) const {
  return isAfter(file, settings_ ? settings_->seenUntil : std::nullopt);
}

std::size_t FileRoll::unseenCount() const {
  return static_cast<std::size_t>(
      std::ranges::count_if(shown_, [this](const auto& file) { return isUnseen(file); }));
}

FilesSettings FileRoll::seen(Date now) const {
  FilesSettings settings = settings_.value_or(FilesSettings{});
  // A file may be dated a little later than the clock that was read before.
  settings.seenUntil = shown_.empty() ? now : std::max(now, shown_.front().date);
  return settings;
}

void FileRoll::holdMarks() {
  held_ = settings_ ? settings_->seenUntil : std::nullopt;
}

bool FileRoll::isMarked(const FolderFile& file) const {
  return held_ ? isAfter(file, *held_) : isUnseen(file);
}

QImage FileRoll::picture(const FolderFile& file) {
  return fileKind(file.path.filename().native()) == FileKind::picture
             ? thumbnails_.find(file, pictureSide)
             : QImage();
}

} // namespace tavrin
