#pragma once

#include "TavrinCore/Base/Coding.h"

#include <variant>

namespace tavrin {

/// An application in the Dock.
struct AppEntry {
  /// The application's file-system path, without a trailing slash.
  std::string path;
  std::optional<std::string> bundleIdentifier;
  std::optional<std::string> displayName;
  /// The Dock's whole tile dictionary as a binary property list.
  std::optional<Data> tile;

  static constexpr auto fields() {
    return std::tuple{
        required("path", &AppEntry::path).titled("Path"),
        optional("bundleIdentifier", &AppEntry::bundleIdentifier).titled("Bundle identifier"),
        optional("displayName", &AppEntry::displayName).titled("Name"),
        optional("tile", &AppEntry::tile).titled("Dock tile")};
  }
  bool operator==(const AppEntry&) const = default;
};

/// A file or folder in the Dock.
struct FileEntry {
  /// The file-system path, without a trailing slash.
  std::string path;
  std::optional<std::string> displayName;
  bool isDirectory = false;
  /// The Dock's whole tile dictionary as a binary property list.
  std::optional<Data> tile;
  /// A colour as hexadecimal text for Tavrin's own drawing; the Dock's file never has it.
  std::optional<std::string> badgeColorHex;

  static constexpr auto fields() {
    return std::tuple{required("path", &FileEntry::path).titled("Path"),
                      optional("displayName", &FileEntry::displayName).titled("Name"),
                      optional("isDirectory", &FileEntry::isDirectory).titled("Folder"),
                      optional("tile", &FileEntry::tile).titled("Dock tile"),
                      optional("badgeColorHex", &FileEntry::badgeColorHex).titled("Badge colour")};
  }
  bool operator==(const FileEntry&) const = default;
};

/// A link in the Dock.
struct URLEntry {
  /// The address as it was stored.
  std::string url;
  std::optional<std::string> displayName;
  /// The Dock's whole tile dictionary as a binary property list.
  std::optional<Data> tile;

  static constexpr auto fields() {
    return std::tuple{required("url", &URLEntry::url).titled("Address"),
                      optional("displayName", &URLEntry::displayName).titled("Name"),
                      optional("tile", &URLEntry::tile).titled("Dock tile")};
  }
  bool operator==(const URLEntry&) const = default;
};

/// Empty room in the Dock. The texts are the Dock's tile types.
enum class SpacerVariant { small, flex, standard };

template <> struct EnumNames<SpacerVariant> {
  static constexpr std::array names = {
      std::pair{SpacerVariant::small, std::string_view("small-spacer-tile")},
      std::pair{SpacerVariant::flex, std::string_view("flex-spacer-tile")},
      std::pair{SpacerVariant::standard, std::string_view("spacer-tile")}};
};

/// "Flex spacer", in English, for programs to read; `DockItem::displayName` has it for people.
const char* spacerName(SpacerVariant variant);

/// One tile of the Dock.
struct DockItem {
  std::variant<AppEntry, SpacerVariant, FileEntry, URLEntry> payload;
  /// Members of the entry's JSON that this build does not know, written back as they were.
  /// They play no part in comparing.
  JSONValue::Object unrecognized = {};

  const AppEntry* app() const { return std::get_if<AppEntry>(&payload); }
  const SpacerVariant* spacer() const { return std::get_if<SpacerVariant>(&payload); }
  const FileEntry* file() const { return std::get_if<FileEntry>(&payload); }
  const URLEntry* url() const { return std::get_if<URLEntry>(&payload); }

  /// Applications and spacers stand left of the Dock's divider.
  bool belongsInAppsSection() const { return app() != nullptr || spacer() != nullptr; }
  /// The entry's name, else the last part of its path, else its address; "Small spacer" and the
  /// like for a spacer.
  std::string displayName() const;

  bool operator==(const DockItem& other) const { return payload == other.payload; }
};

/// {"app": {"_0": {…}}}, and likewise "spacer", "file" and "url".
template <> struct Coder<DockItem> {
  static DockItem decode(const JSONValue& json);
  static JSONValue encode(const DockItem& item);
};

/// The Dock's items as they were at one moment.
struct DockSnapshot {
  /// Left of the divider.
  std::vector<DockItem> apps;
  /// Right of it.
  std::vector<DockItem> others;
  Date capturedAt;

  std::vector<DockItem> allItems() const;

  static constexpr auto fields() {
    return std::tuple{required("apps", &DockSnapshot::apps),
                      required("others", &DockSnapshot::others),
                      required("capturedAt", &DockSnapshot::capturedAt)};
  }
  bool operator==(const DockSnapshot&) const = default;
};

} // namespace tavrin

template <> struct std::hash<tavrin::DockItem> {
  std::size_t operator()(const tavrin::DockItem& item) const;
};
