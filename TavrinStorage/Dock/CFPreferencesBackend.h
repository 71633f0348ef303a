#pragma once

#include "TavrinCore/Dock/DockPreferencesBackend.h"
#include "TavrinPlatform/PreferencesService.h"

namespace tavrin {

/// The user's own Dock preferences, through the preferences service.
class CFPreferencesBackend final : public DockPreferencesBackend {
public:
  static constexpr const char* domain = "com.apple.dock";

  CFPreferencesBackend(PreferencesService& service, const std::filesystem::path& homeFolder)
      : service_(service), url_(DockPlistPath::userDockPlistURL(homeFolder)) {}

  std::filesystem::path url() const override { return url_; }
  /// Both sections are empty where there are no preferences yet.
  DockTiles readTiles() override;
  void writeTiles(const DockTiles& tiles) override;
  /// `exclusiveAccessTo` the domain's file, whose folder it makes. The service itself knows no
  /// locks: who writes the Dock's preferences without this one is not kept out.
  std::shared_ptr<void> exclusiveAccess() override;

private:
  PreferencesService& service_;
  std::filesystem::path url_;
};

} // namespace tavrin
