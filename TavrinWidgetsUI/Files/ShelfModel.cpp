#include "TavrinWidgetsUI/Files/ShelfModel.h"

#include "TavrinCore/Kinds/Files/FileKind.h"
#include "TavrinCore/Kinds/Files/ShelfSettings.h"

#include <algorithm>
#include <set>

namespace tavrin {

ShelfModel::ShelfModel(FolderWatch& watch, RunLoop& runLoop)
    : roll_(watch, runLoop), thumbnails_(runLoop) {
  roll_.onChange = [this] {
    listed();
    if (onChange)
      onChange();
  };
  thumbnails_.onChange = [this] {
    if (onChange)
      onChange();
  };
}

void ShelfModel::setSettings(const ShelfSettings& settings) {
  const auto files = shelf::files(settings);
  settings_ = settings;
  const bool isSame = std::ranges::equal(files, items_, {}, {}, &ShelfItem::path);
  if (isSame)
    return;
  std::vector<ShelfItem> items;
  for (const auto& path : files) {
    const auto known = std::ranges::find(items_, path, &ShelfItem::path);
    items.push_back(known != items_.end() ? *known : ShelfItem{path, false, std::nullopt});
  }
  items_ = std::move(items);
  std::set<std::string> names;
  std::set<std::filesystem::path> folders;
  for (const auto& path : files) {
    names.insert(path.filename().native());
    folders.insert(path.parent_path());
  }
  FolderRequest request;
  // Of each folder all that has one of the names; another folder's file may be among them.
  request.limit = std::max<std::size_t>(1, names.size() * folders.size());
  request.includesFolders = true;
  request.classify = [names](std::string_view name) {
    return names.contains(std::string(name)) ? FolderEntry::wanted : FolderEntry::ignored;
  };
  roll_.follow(std::move(request),
               [found = std::vector(folders.begin(), folders.end())] { return found; });
}

void ShelfModel::listed() {
  for (ShelfItem& item : items_) {
    const auto& files = roll_.listing().files;
    const auto found = std::ranges::find(files, item.path, &FolderFile::path);
    item.isMissing = found == files.end();
    item.file = item.isMissing ? std::nullopt : std::optional(*found);
  }
}

std::size_t ShelfModel::missingCount() const {
  return static_cast<std::size_t>(std::ranges::count_if(items_, &ShelfItem::isMissing));
}

QImage ShelfModel::picture(const ShelfItem& item) {
  return item.file && !item.file->isFolder &&
                 fileKind(item.path.filename().native()) == FileKind::picture
             ? thumbnails_.find(*item.file, pictureSide)
             : QImage();
}

} // namespace tavrin
