#include "TavrinWidgetsUI/Files/ScreenshotRoll.h"

#include "TavrinCore/Base/FileURL.h"
#include "TavrinCore/Kinds/Files/FileKind.h"

#include <algorithm>

namespace tavrin {

ScreenshotRoll::ScreenshotRoll(FolderWatch& watch, UserFiles& files, RunLoop& runLoop)
    : files_(files), roll_(watch, runLoop), thumbnails_(runLoop) {
  const auto changed = [this] {
    if (onChange)
      onChange();
  };
  roll_.onChange = changed;
  thumbnails_.onChange = changed;
}

void ScreenshotRoll::setSettings(const ScreenshotSettings& settings) {
  if (settings_ == settings)
    return;
  settings_ = settings;
  FolderRequest request;
  request.limit = static_cast<std::size_t>(std::clamp(settings.limit, 1, 100));
  request.order = FolderRequest::Order::modification;
  request.classify = [](std::string_view name) {
    return !isHiddenName(name) && fileKind(name) == FileKind::picture ? FolderEntry::wanted
                                                                      : FolderEntry::ignored;
  };
  roll_.follow(std::move(request), [&files = files_, chosen = settings.folder.value_or("")] {
    if (chosen.empty())
      return std::vector{files.screenshotFolder()};
    // What is no path leads to no folder, and the panel says so.
    return std::vector{pathOfText(chosen, files.homeFolder()).value_or(chosen)};
  });
}

FolderListing::State ScreenshotRoll::state() const {
  const auto& folders = roll_.listing().folders;
  return folders.empty() ? FolderListing::State::listed : folders.front().state;
}

std::filesystem::path ScreenshotRoll::folder() const {
  const auto& folders = roll_.listing().folders;
  return folders.empty() ? std::filesystem::path() : folders.front().path;
}

} // namespace tavrin
