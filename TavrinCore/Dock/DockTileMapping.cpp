#include "TavrinCore/Dock/DockTileMapping.h"

#include "TavrinCore/Dock/DockURLString.h"
#include "TavrinCore/Text/Texts.h"

namespace tavrin {
namespace {

using Dictionary = PropertyList::Dictionary;

constexpr std::string_view typeKey = "tile-type";
constexpr std::string_view dataKey = "tile-data";
constexpr std::string_view fileDataKey = "file-data";
constexpr std::string_view urlKey = "url";
constexpr std::string_view urlStringKey = "_CFURLString";
constexpr std::string_view labelKey = "label";
constexpr std::string_view fileLabelKey = "file-label";
constexpr std::string_view bundleIdentifierKey = "bundle-identifier";
constexpr std::string_view arrangementKey = "arrangement";
constexpr std::string_view displayKey = "displayas";
constexpr std::string_view viewKey = "showas";

const PropertyList* find(const Dictionary& dictionary, std::string_view key) {
  const auto found = dictionary.find(key);
  return found == dictionary.end() ? nullptr : &found->second;
}

void set(Dictionary& dictionary, std::string_view key, PropertyList value) {
  dictionary.insert_or_assign(std::string(key), std::move(value));
}

/// tile-data → `key` → _CFURLString; null when a link of the chain is missing or no text.
const std::string* address(const Dictionary& tile, std::string_view key) {
  const auto* data = find(tile, dataKey);
  const auto* holder = data == nullptr ? nullptr : data->entry(key);
  const auto* text = holder == nullptr ? nullptr : holder->entry(urlStringKey);
  return text == nullptr ? nullptr : text->string();
}

const std::string& requiredAddress(const Dictionary& tile, std::string_view key,
                                   std::string_view context, const std::filesystem::path& file) {
  const auto* text = address(tile, key);
  if (text == nullptr) {
    throw DockError::plistMalformed(file,
                                    translated("{tile} is missing tile-data.{key}._CFURLString",
                                               {{"tile", translation(context)}, {"key", key}}));
  }
  return *text;
}

std::optional<std::string> dataText(const Dictionary& tile, std::string_view key) {
  const auto* value = find(tile, dataKey)->entry(key);
  const auto* text = value == nullptr ? nullptr : value->string();
  return text == nullptr ? std::nullopt : std::optional(*text);
}

std::optional<Data> serialized(const Dictionary& tile) {
  try {
    return PropertyList(tile).binary();
  } catch (const PropertyListError&) {
    return std::nullopt;
  }
}

DockItem decodeApp(const Dictionary& tile, const std::filesystem::path& plist) {
  const auto& text = requiredAddress(tile, fileDataKey, marked("app tile"), plist);
  return {AppEntry{.path = DockURLString::path(text),
                   .bundleIdentifier = dataText(tile, bundleIdentifierKey),
                   .displayName = dataText(tile, fileLabelKey),
                   .tile = serialized(tile)}};
}

DockItem decodeFile(const Dictionary& tile, bool isDirectory, const std::filesystem::path& plist) {
  const auto& text = requiredAddress(tile, fileDataKey, marked("file tile"), plist);
  return {FileEntry{.path = DockURLString::path(text),
                    .displayName = dataText(tile, fileLabelKey),
                    .isDirectory = isDirectory,
                    .tile = serialized(tile),
                    .badgeColorHex = std::nullopt}};
}

DockItem decodeURL(const Dictionary& tile, const std::filesystem::path& plist) {
  const auto& text = requiredAddress(tile, urlKey, marked("url tile"), plist);
  return {URLEntry{.url = text, .displayName = dataText(tile, labelKey), .tile = serialized(tile)}};
}

/// The tile an entry was read from, less its GUID, where its address under `key` is the entry's;
/// empty otherwise.
Dictionary originalTile(const std::optional<Data>& bytes, std::string_view key,
                        const std::string& path, bool isPath) {
  if (!bytes)
    return {};
  try {
    PropertyList parsed = PropertyList::parse(bytes->view());
    auto* tile = parsed.dictionary();
    const auto* text = tile == nullptr ? nullptr : address(*tile, key);
    if (text == nullptr || (isPath ? DockURLString::path(*text) : *text) != path)
      return {};
    tile->erase("GUID");
    return std::move(*tile);
  } catch (const PropertyListError&) {
    return {};
  }
}

Dictionary takeData(Dictionary& tile) {
  const auto found = tile.find(dataKey);
  auto* data = found == tile.end() ? nullptr : found->second.dictionary();
  return data == nullptr ? Dictionary() : std::move(*data);
}

Dictionary finished(Dictionary tile, Dictionary data, std::string_view type) {
  set(tile, dataKey, std::move(data));
  set(tile, typeKey, type);
  return tile;
}

Dictionary addressDictionary(std::string text) {
  return {{std::string(urlStringKey), std::move(text)},
          {"_CFURLStringType", DockURLString::urlStringType}};
}

Dictionary encodeApp(const AppEntry& entry) {
  auto tile = originalTile(entry.tile, fileDataKey, entry.path, true);
  auto data = takeData(tile);
  set(data, fileDataKey, addressDictionary(DockURLString::fileURLString(entry.path, true)));
  set(data, fileLabelKey,
      DockItem{AppEntry{.path = entry.path,
                        .bundleIdentifier = {},
                        .displayName = entry.displayName,
                        .tile = {}}}
          .displayName());
  if (entry.bundleIdentifier)
    set(data, bundleIdentifierKey, *entry.bundleIdentifier);
  return finished(std::move(tile), std::move(data), "file-tile");
}

Dictionary encodeFile(const FileEntry& entry) {
  auto tile = originalTile(entry.tile, fileDataKey, entry.path, true);
  auto data = takeData(tile);
  set(data, fileDataKey,
      addressDictionary(DockURLString::fileURLString(entry.path, entry.isDirectory)));
  set(data, fileLabelKey,
      DockItem{FileEntry{.path = entry.path,
                         .displayName = entry.displayName,
                         .tile = {},
                         .badgeColorHex = {}}}
          .displayName());
  if (entry.isDirectory)
    for (const auto& [key, fallback] :
         {std::pair{std::string_view("file-type"), 2}, std::pair{arrangementKey, 1},
          std::pair{displayKey, 0}, std::pair{viewKey, 0}})
      data.try_emplace(std::string(key), fallback);
  return finished(std::move(tile), std::move(data),
                  entry.isDirectory ? "directory-tile" : "file-tile");
}

Dictionary encodeURL(const URLEntry& entry) {
  auto tile = originalTile(entry.tile, urlKey, entry.url, false);
  auto data = takeData(tile);
  set(data, urlKey, addressDictionary(entry.url));
  set(data, labelKey, entry.displayName.value_or(entry.url));
  return finished(std::move(tile), std::move(data), "url-tile");
}

template <class E>
std::optional<E> option(const Dictionary& tile, std::string_view key, E first, E last) {
  const auto* data = find(tile, dataKey);
  const auto* value = data == nullptr ? nullptr : data->entry(key);
  const auto* number = value == nullptr ? nullptr : value->integer();
  if (number == nullptr || *number < static_cast<int>(first) || *number > static_cast<int>(last))
    return std::nullopt;
  return static_cast<E>(*number);
}

} // namespace

DockItem decodeItem(const Dictionary& tile, DockSection section,
                    const std::filesystem::path& file) {
  const auto* value = find(tile, typeKey);
  const auto* type = value == nullptr ? nullptr : value->string();
  if (type == nullptr)
    throw DockError::plistMalformed(file, translated("tile is missing tile-type"));
  if (const auto variant = enumNamed<SpacerVariant>(*type))
    return {*variant};
  if (*type == "file-tile")
    return section == DockSection::apps ? decodeApp(tile, file) : decodeFile(tile, false, file);
  if (*type == "directory-tile")
    return decodeFile(tile, true, file);
  if (*type == "url-tile")
    return decodeURL(tile, file);
  throw DockError::unsupportedItemType(*type);
}

Dictionary encodeItem(const DockItem& item) {
  if (const auto* app = item.app())
    return encodeApp(*app);
  if (const auto* file = item.file())
    return encodeFile(*file);
  if (const auto* url = item.url())
    return encodeURL(*url);
  return finished({}, {}, nameOf(*item.spacer()));
}

FolderOptions folderOptions(const FileEntry& entry) {
  using Options = FolderOptions;
  const auto tile = originalTile(entry.tile, fileDataKey, entry.path, true);
  return {option(tile, arrangementKey, Options::Arrangement::name, Options::Arrangement::kind),
          option(tile, displayKey, Options::Display::stack, Options::Display::folder),
          option(tile, viewKey, Options::View::automatic, Options::View::list)};
}

FileEntry withFolderOptions(FileEntry entry, const FolderOptions& options) {
  auto tile = encodeFile(entry);
  auto& data = *tile.find(dataKey)->second.dictionary();
  if (options.arrangement)
    set(data, arrangementKey, static_cast<int>(*options.arrangement));
  if (options.display)
    set(data, displayKey, static_cast<int>(*options.display));
  if (options.view)
    set(data, viewKey, static_cast<int>(*options.view));
  entry.tile = serialized(tile);
  return entry;
}

std::vector<Dictionary> tileArray(const PropertyList* value, std::string_view key,
                                  const std::filesystem::path& file) {
  std::vector<Dictionary> tiles;
  if (value == nullptr)
    return tiles;
  const auto* items = value->array();
  const auto isDictionary = [](const PropertyList& one) { return one.dictionary() != nullptr; };
  if (items == nullptr || !std::all_of(items->begin(), items->end(), isDictionary))
    throw DockError::plistMalformed(file,
                                    translated("{key} is not an array of dicts", {{"key", key}}));
  tiles.reserve(items->size());
  for (const auto& item : *items)
    tiles.push_back(*item.dictionary());
  return tiles;
}

PropertyList tileArray(const std::vector<Dictionary>& tiles) {
  return PropertyList::Array(tiles.begin(), tiles.end());
}

} // namespace tavrin
