#pragma once

#include "TavrinHost/HostContext.h"
#include "TavrinPlatform/Platform.h"
#include "TavrinSettings/Base/InstalledApps.h"
#include "TavrinSettings/Base/LiveTiles.h"
#include "TavrinSettings/Base/TileStage.h"
#include "TavrinSettings/Editing/History.h"
#include "TavrinSettings/Editing/WidgetsEditor.h"
#include "TavrinSettings/Window/FormDesk.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelPalette.h"

#include <memory>
#include <optional>

namespace tavrin {

class SettingsWindow;

/// The settings program: its window over the widgets file, the running slots and the desktop.
class SettingsApp {
public:
  SettingsApp(Platform& platform, CommandPlatform& host);
  ~SettingsApp();
  SettingsApp(const SettingsApp&) = delete;
  SettingsApp& operator=(const SettingsApp&) = delete;

  void show();
  /// Shows the window at a widget, by its identifier.
  void edit(const std::string& id);

private:
  class Context;

  void open();
  void reload();
  /// Starts the slots that have widgets which they had not.
  void startSlots();
  PanelAppearance appearance() const;
  /// The window's icon, which the desktop's own theme may draw.
  void takeIcon(const std::string& icon);

  Platform& platform_;
  std::unique_ptr<Context> context_;
  History history_;
  TileStage stage_;
  LiveTiles live_;
  InstalledApps apps_;
  FormDesk forms_;
  std::optional<WidgetsEditor> editor_;
  std::set<int> newSlots_;
  std::unique_ptr<SettingsWindow> window_;
  bool answersEdits_ = false;
  std::vector<TokenPtr> icons_;
  TokenPtr appsChanged_;
  TokenPtr widgetsChanged_;
  TokenPtr editRequested_;
  TokenPtr appearanceChanged_;
};

} // namespace tavrin
