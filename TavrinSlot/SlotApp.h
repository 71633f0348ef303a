#pragma once

#include "TavrinCore/Base/Log.h"
#include "TavrinCore/Widgets/DockWidget.h"
#include "TavrinPlatform/Platform.h"
#include "TavrinSlot/Base/DockPanelPresenter.h"
#include "TavrinSlot/Base/DockTileRenderer.h"
#include "TavrinSlot/Base/SlotContext.h"
#include "TavrinSlot/Base/WidgetController.h"
#include "TavrinStorage/WidgetStore.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

namespace tavrin {

/// The application delegate of one slot: finds the widget of its slot in the widgets file, hosts
/// the controller of that widget's kind, and follows every change. Main thread only.
class SlotApp {
public:
  /// The slot number is the bundle's "TavrinSlot" entry; without one it is 0, which no widget has.
  explicit SlotApp(Platform& platform);
  ~SlotApp();
  SlotApp(const SlotApp&) = delete;
  SlotApp& operator=(const SlotApp&) = delete;

  void applicationDidFinishLaunching();
  /// Always false: the system has nothing left to do.
  bool applicationShouldHandleReopen(bool hasVisibleWindows);
  void applicationDidResignActive();
  /// Whether the widget's kind takes files at all.
  bool applicationTakesFiles() const;
  /// Whether the widget took the files.
  bool applicationOpenFiles(const std::vector<std::filesystem::path>& paths);

  /// Whether a controller can be kept when its widget's kind changes from `before` to `after`: one
  /// class of controllers serves both.
  static bool sameKind(const std::optional<DockWidget::Kind>& before,
                       const DockWidget::Kind& after);

  int slot() const { return slot_; }
  const std::optional<DockWidget>& widget() const { return widget_; }
  WidgetController* controller() const { return controller_.get(); }

private:
  void openStore();
  void reload();
  void reloadOnce();
  void quit();
  /// Goes on with the record that the slot has now: under the controller that stands, where it is
  /// the same widget's; else that one's life ends before the tile moves, and another begins.
  void show(DockWidget widget);
  void editWidget();
  void placeTile();

  Platform& platform_;
  Log log_;
  int slot_ = 0;
  DockPanelPresenter panel_;
  DockTileRenderer tile_;
  SlotContext context_;
  std::unique_ptr<WidgetStore> store_;
  std::optional<DockWidget> widget_;
  std::unique_ptr<WidgetController> controller_;
  bool isReloading_ = false;
  bool isReloadDue_ = false;
  TokenPtr widgetsChanged_;
};

} // namespace tavrin
