#include "TavrinCore/Desktop/IconTheme.h"

#include "TavrinCore/Desktop/KeyFile.h"
#include "TavrinCore/Text/Text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdlib>
#include <limits>
#include <map>
#include <set>

namespace tavrin {
namespace {

constexpr std::string_view themeGroup = "Icon Theme";
constexpr std::string_view lastTheme = "hicolor";
constexpr std::array<std::string_view, 3> endings = {".png", ".svg", ".xpm"};
constexpr std::size_t mostFolders = 2000;
constexpr std::size_t mostThemes = 32;
constexpr int largestSize = 16'384;
constexpr int largestScale = 16;

std::vector<std::string> listOf(std::string_view value) {
  std::vector<std::string> items;
  while (!value.empty() && items.size() < mostFolders) {
    const auto end = std::min(value.find(','), value.size());
    const auto item = trimmed(value.substr(0, end));
    if (!item.empty() && isUTF8(item))
      items.emplace_back(item);
    value.remove_prefix(std::min(end + 1, value.size()));
  }
  return items;
}

/// A name that stays inside of the folder it is looked for in.
bool staysInside(std::string_view name) {
  return !name.empty() && name.front() != '/' && name.find('\0') == std::string_view::npos &&
         name != ".." && !name.starts_with("../") && name.find("/../") == std::string_view::npos &&
         !name.ends_with("/..");
}

using Values = std::map<std::string_view, std::string_view>;

int number(const Values& values, std::string_view key, int most, int otherwise) {
  const auto found = values.find(key);
  if (found == values.end())
    return otherwise;
  const auto text = trimmed(found->second);
  int value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size() || value < 0 || value > most)
    return otherwise;
  return value;
}

std::optional<IconTheme::Folder> folderOf(const std::string& path, const Values& values) {
  using Type = IconTheme::Folder::Type;
  IconTheme::Folder folder;
  folder.path = path;
  folder.size = number(values, "Size", largestSize, 0);
  if (folder.size == 0 || !staysInside(path))
    return std::nullopt;
  folder.scale = std::max(number(values, "Scale", largestScale, 1), 1);
  folder.minimumSize = number(values, "MinSize", largestSize, folder.size);
  folder.maximumSize = number(values, "MaxSize", largestSize, folder.size);
  folder.threshold = number(values, "Threshold", largestSize, 2);
  const auto type = values.find("Type");
  if (type != values.end() && trimmed(type->second) == "Fixed")
    folder.type = Type::fixed;
  else if (type != values.end() && trimmed(type->second) == "Scalable")
    folder.type = Type::scalable;
  return folder;
}

/// Icons are often named with the ending that only a path should have.
std::string withoutEnding(const std::string& name) {
  for (const auto ending : endings)
    if (name.ends_with(ending))
      return name.substr(0, name.size() - ending.size());
  return name;
}

class Search {
public:
  Search(const std::string& name, int points, int scale, const IconSources& sources)
      : name_(name), points_(points), scale_(scale), sources_(sources) {}

  std::optional<std::filesystem::path> inThemes(const std::string& theme) {
    if (theme.empty() || theme == lastTheme || seen_.size() >= mostThemes || !staysInside(theme) ||
        !seen_.insert(theme).second)
      return std::nullopt;
    const auto index = sources_.theme(theme);
    if (!index)
      return std::nullopt;
    if (auto found = inTheme(theme, *index))
      return found;
    for (const auto& parent : index->inherits)
      if (auto found = inThemes(parent))
        return found;
    return std::nullopt;
  }

  std::optional<std::filesystem::path> inLastTheme() const {
    const std::string theme(lastTheme);
    const auto index = sources_.theme(theme);
    return index ? inTheme(theme, *index) : std::nullopt;
  }

  std::optional<std::filesystem::path> outsideThemes() const {
    for (const auto& base : sources_.folders)
      if (auto found = in(base))
        return found;
    return std::nullopt;
  }

private:
  std::optional<std::filesystem::path> in(const std::filesystem::path& folder) const {
    for (const auto ending : endings)
      if (auto file = folder / (name_ + std::string(ending)); sources_.exists(file))
        return file;
    return std::nullopt;
  }

  std::optional<std::filesystem::path> inTheme(const std::string& theme,
                                               const IconTheme& index) const {
    std::vector<const IconTheme::Folder*> order;
    for (const auto& folder : index.folders)
      order.push_back(&folder);
    // Where nothing suits, the nearest; of two as near the larger, which is only made smaller.
    const auto rank = [&](const IconTheme::Folder* folder) {
      return std::pair(folder->suits(points_, scale_) ? -1 : folder->distance(points_, scale_),
                       -folder->size * folder->scale);
    };
    std::ranges::stable_sort(order, {}, rank);
    for (const auto* folder : order)
      for (const auto& base : sources_.folders)
        if (auto found = in(base / theme / folder->path))
          return found;
    return std::nullopt;
  }

  std::string name_;
  int points_;
  int scale_;
  const IconSources& sources_;
  std::set<std::string> seen_;
};

} // namespace

bool IconTheme::Folder::suits(int points, int pixelsPerPoint) const {
  if (scale != pixelsPerPoint)
    return false;
  switch (type) {
  case Type::fixed:
    return points == size;
  case Type::scalable:
    return points >= minimumSize && points <= maximumSize;
  case Type::threshold:
    return std::abs(points - size) <= threshold;
  }
  return false;
}

int IconTheme::Folder::distance(int points, int pixelsPerPoint) const {
  const int wanted = points * pixelsPerPoint;
  int least = size * scale;
  int most = least;
  if (type == Type::scalable) {
    least = minimumSize * scale;
    most = maximumSize * scale;
  } else if (type == Type::threshold) {
    least = (size - threshold) * scale;
    most = (size + threshold) * scale;
  }
  return wanted < least ? least - wanted : wanted > most ? wanted - most : 0;
}

IconTheme IconTheme::parse(std::string_view text) {
  IconTheme theme;
  std::vector<std::string> paths;
  std::map<std::string, Values, std::less<>> groups;
  eachKeyFileLine(text.substr(0, maximumSize), [&](auto group, auto key, auto value) {
    if (group != themeGroup) {
      auto found = groups.find(group);
      if (found == groups.end() && groups.size() < mostFolders)
        found = groups.try_emplace(std::string(group)).first;
      if (found != groups.end())
        found->second.try_emplace(key, value);
    } else if (key == "Inherits") {
      theme.inherits = listOf(value);
    } else if (key == "Directories" || key == "ScaledDirectories") {
      const auto more = listOf(value);
      paths.insert(paths.end(), more.begin(), more.end());
    }
  });
  std::set<std::string_view> seen;
  for (const auto& path : paths) {
    const auto group = groups.find(path);
    if (group == groups.end() || !seen.insert(path).second)
      continue;
    if (auto folder = folderOf(path, group->second))
      theme.folders.push_back(std::move(*folder));
  }
  return theme;
}

std::optional<std::filesystem::path> findIcon(const std::string& name, int points, int scale,
                                              const std::string& theme,
                                              const IconSources& sources) {
  if (name.starts_with('/'))
    return sources.exists(name) ? std::optional<std::filesystem::path>(name) : std::nullopt;
  const std::string bare = withoutEnding(name);
  if (bare.find('/') != std::string::npos || !staysInside(bare))
    return std::nullopt;
  Search search(bare, points, scale, sources);
  auto found = search.inThemes(theme);
  if (!found)
    found = search.inLastTheme();
  return found ? found : search.outsideThemes();
}

} // namespace tavrin
