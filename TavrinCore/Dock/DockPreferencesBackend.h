#pragma once

#include "TavrinCore/Dock/DockError.h"
#include "TavrinCore/Dock/PropertyList.h"

#include <memory>
#include <vector>

namespace tavrin {

/// The Dock's two arrays of tile dictionaries, exactly as its preferences hold them.
struct DockTiles {
  static constexpr std::string_view appsKey = "persistent-apps";
  static constexpr std::string_view othersKey = "persistent-others";

  std::vector<PropertyList::Dictionary> apps;
  std::vector<PropertyList::Dictionary> others;

  bool operator==(const DockTiles&) const = default;
};

/// Where the Dock's preferences are kept. Both operations throw DockError; a write replaces both
/// arrays or neither.
class DockPreferencesBackend {
public:
  virtual ~DockPreferencesBackend() = default;
  /// The file that errors name.
  virtual std::filesystem::path url() const = 0;
  virtual DockTiles readTiles() = 0;
  virtual void writeTiles(const DockTiles& tiles) = 0;
  /// Keeps other writers out until what it gives goes; null where nothing keeps them out. For
  /// reading, changing and writing as one, and no longer: others wait meanwhile. Throws DockError
  /// when others keep this one out.
  virtual std::shared_ptr<void> exclusiveAccess() { return nullptr; }
};

/// The list of dictionaries under one key; empty when `value` is null. Throws DockError
/// (plistMalformed, of `file`) for anything else.
std::vector<PropertyList::Dictionary> tileArray(const PropertyList* value, std::string_view key,
                                                const std::filesystem::path& file);
/// The same as a property list.
PropertyList tileArray(const std::vector<PropertyList::Dictionary>& tiles);

/// Where a user's Dock preferences are kept.
struct DockPlistPath {
  static constexpr std::string_view userDockPlistFileName = "com.apple.dock.plist";
  static std::filesystem::path userDockPlistURL(const std::filesystem::path& homeFolder) {
    return homeFolder / "Library" / "Preferences" / userDockPlistFileName;
  }
};

} // namespace tavrin
