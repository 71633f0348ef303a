#include "TavrinCore/Kinds/Files/Shelf.h"

#include "TavrinCore/Base/FileURL.h"

#include <algorithm>

namespace tavrin::shelf {
namespace {

using Paths = std::vector<std::filesystem::path>;

/// Whether there was room for another one.
bool add(Paths& files, const std::filesystem::path& file) {
  // A folder's path may end in a slash.
  const auto plain = file.has_filename() ? file : file.parent_path();
  if (!plain.is_absolute() || !plain.has_filename())
    return true;
  if (std::ranges::find(files, plain) == files.end())
    files.push_back(plain);
  return files.size() < static_cast<std::size_t>(ShelfSettings::maximumCount);
}

ShelfSettings settingsOf(const Paths& files) {
  ShelfSettings settings;
  for (const auto& file : files)
    settings.paths.push_back(pathText(file));
  return settings;
}

} // namespace

Paths files(const ShelfSettings& settings) {
  Paths found;
  for (const auto& text : settings.paths)
    if (const auto path = pathOfText(text); path && !add(found, *path))
      break;
  return found;
}

ShelfSettings adding(const ShelfSettings& settings, const Paths& added) {
  Paths all;
  const auto addEach = [&](const Paths& some) {
    return std::ranges::all_of(some, [&](const auto& file) { return add(all, file); });
  };
  if (addEach(added))
    addEach(files(settings));
  return settingsOf(all);
}

ShelfSettings removing(const ShelfSettings& settings, const std::filesystem::path& file) {
  Paths all = files(settings);
  std::erase(all, file);
  return settingsOf(all);
}

} // namespace tavrin::shelf
