#include "TavrinHost/Dock/DockItems.h"

#include "TavrinCore/Dock/DockSwapper.h"
#include "TavrinCore/Dock/DockURLString.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinHost/Dock/DockLibrary.h"
#include "TavrinPlatform/Files/PlistRoot.h"

#include <algorithm>

namespace tavrin {
namespace {

namespace fs = std::filesystem;

std::optional<std::string> bundleIdentifier(const fs::path& bundle) {
  try {
    const auto root = readPlistRoot(bundle / "Contents" / "Info.plist");
    const auto found =
        root ? root->find("CFBundleIdentifier") : PropertyList::Dictionary::const_iterator();
    if (root && found != root->end() && found->second.string() != nullptr)
      return *found->second.string();
  } catch (const DockError&) {
    // An application without a readable description is added without its identifier.
  }
  return std::nullopt;
}

/// Where the item stands; another one there is not touched.
std::vector<DockItem>::iterator standing(std::vector<DockItem>& items, const PlacedDockItem& item) {
  if (item.index >= items.size() || items[item.index] != item.item)
    throw HostError(ExitCode::notFound, translated("\"{name}\" was changed elsewhere",
                                                   {{"name", item.item.displayName()}}));
  return items.begin() + static_cast<std::ptrdiff_t>(item.index);
}

/// Of items that read the same way in the Dock.
bool looksLike(const DockItem& one, const DockItem& other) {
  return one.displayName() == other.displayName() &&
         (one.file() == nullptr || other.file() == nullptr ||
          folderOptions(*one.file()) == folderOptions(*other.file()));
}

} // namespace

DockItem itemNamed(HostContext& context, const std::string& word, bool mayBeMissing) {
  if (word.find("://") != std::string::npos && !word.starts_with("file://"))
    return {URLEntry{word, std::nullopt, std::nullopt}};
  const bool endsInSlash = word.size() > 1 && word.ends_with('/');
  const fs::path path = absolutePath(context, DockURLString::path(word));
  std::error_code error;
  const auto status = fs::status(path, error);
  if (!fs::exists(status) && !mayBeMissing)
    throw DockError::fileNotFound(path);
  if (path.extension() == ".app")
    return {AppEntry{path.string(), bundleIdentifier(path), path.stem().string(), std::nullopt}};
  const bool isDirectory = fs::exists(status) ? fs::is_directory(status) : endsInSlash;
  return {FileEntry{path.string(), std::nullopt, isDirectory, std::nullopt, std::nullopt}};
}

DockItem withLook(DockItem item, const DockItemLook& look) {
  auto label = look.label;
  if (label && label->empty())
    label = std::nullopt;
  if (auto* app = std::get_if<AppEntry>(&item.payload); app != nullptr && look.label)
    app->displayName = label.value_or(fs::path(app->path).stem().string());
  if (auto* url = std::get_if<URLEntry>(&item.payload); url != nullptr && look.label)
    url->displayName = label;
  if (auto* file = std::get_if<FileEntry>(&item.payload)) {
    if (look.label)
      file->displayName = label;
    if (!look.folder.isEmpty() && file->isDirectory)
      *file = withFolderOptions(*file, look.folder);
  }
  return item;
}

std::vector<DockItem> relooked(const DockSnapshot& before, const DockSnapshot& after) {
  const auto then = placedItems(asRead(before));
  std::vector<DockItem> changed;
  for (const auto& now : placedItems(asRead(after))) {
    if (now.item.spacer() != nullptr)
      continue;
    const auto known = std::ranges::find_if(then, [&](const PlacedDockItem& one) {
      return one.section == now.section && one.item.payload.index() == now.item.payload.index() &&
             addressOf(one.item) == addressOf(now.item);
    });
    if (known != then.end() && !looksLike(known->item, now.item))
      changed.push_back(now.item);
  }
  return changed;
}

bool showTheSame(const DockSnapshot& one, const DockSnapshot& other) {
  return one.apps.size() == other.apps.size() && one.others.size() == other.others.size() &&
         !DockChangeDetector::diff(asRead(one), asRead(other)).hasChanges() &&
         relooked(one, other).empty();
}

DockEdit movingTo(PlacedDockItem item, DockPosition to) {
  return [item = std::move(item), to](DockSnapshot& dock) {
    auto& items = sectionOf(dock, item.section);
    items.erase(standing(items, item));
    auto& target = sectionOf(dock, to.section);
    target.insert(target.begin() + static_cast<std::ptrdiff_t>(std::min(to.index, target.size())),
                  fitting(item.item, to.section));
  };
}

DockEdit replacingAt(PlacedDockItem item, std::vector<DockItem> items) {
  return [item = std::move(item), items = std::move(items)](DockSnapshot& dock) {
    auto& section = sectionOf(dock, item.section);
    auto place = section.erase(standing(section, item));
    for (const auto& each : items)
      place = section.insert(place, fitting(each, item.section)) + 1;
  };
}

} // namespace tavrin
