#pragma once

#include "TavrinPlatform/Linux/Base/LayerShell.h"
#include "TavrinPlatform/Linux/Edge/PressWindow.h"
#include "TavrinPlatform/Linux/Tile/PopoverWindow.h"
#include "TavrinPlatform/Linux/Tile/PressWatcher.h"
#include "TavrinPlatform/PanelPopover.h"

#include <QElapsedTimer>
#include <QTimer>
#include <QVariantAnimation>
#include <optional>

namespace tavrin {

/// The popover as a window that takes the focus like any other and grabs nothing. It closes on
/// Escape, on a press outside of this process's windows, and when the focus goes elsewhere
/// while the pointer is not on the own tile: a press there is the tile's, which toggles.
/// The ground is the content's own `QPalette::Window` colour where it has set a palette, else
/// light or dark as the desktop prefers.
class QtPanelPopover final : public PanelPopover {
public:
  struct Environment {
    std::function<bool()> prefersReducedMotion;
    std::function<bool()> prefersDarkAppearance;
    /// The user is going elsewhere; told before the popover closes for it.
    std::function<void()> resignedActive;
    std::function<void()> hasClosed;
    /// Told before the panel is shown, and when it begins to go.
    std::function<void(bool isShown)> shownChanged = nullptr;
    /// Null where panels are no surfaces of a layer shell.
    std::function<LayerShell*()> layers;
    /// The row of tiles, whose presses are theirs.
    std::function<QRect()> strip;
    /// Whether the X server is a Wayland compositor's client: it hears of few presses then.
    bool isOnCompositor = false;
    /// Whether the own tile has the keyboard, and gives it back to it. Null where tiles have none.
    std::function<bool()> hasTileKeys = nullptr;
    std::function<void()> resumeTileKeys = nullptr;
  };
  explicit QtPanelPopover(Environment environment);
  ~QtPanelPopover() override;

  void setContent(QWidget* content) override;
  QWidget* content() const override;
  void setContentSize(QSize size) override;
  bool isShown() const override { return isShown_; }
  void show(Point anchor, RectEdge edge) override;
  void close() override;

  /// Whether a press at `place` closed the popover just now: then that press is used up.
  bool hasJustBeenClosedAt(Point place) const;

  /// A window manager has gone or come: the focus is where it left it.
  void managerChanged();

private:
  PopoverWindow& window();
  void arrange();
  void compareWithServer();
  void updatePalette();
  void put();
  void coverOthers();
  void appear();
  void disappear();
  void takeFocus();
  void settleFocus();
  void giveFocusBack(bool hadFocus);
  void pressedAt(QPoint pixel);
  void focusChanged();
  void leave();
  bool isAnimated() const;

  Environment environment_;
  LayerShell* layers_ = nullptr;
  std::unique_ptr<PopoverWindow> window_;
  std::unique_ptr<PressWatcher> presses_;
  std::unique_ptr<PressWindow> elsewhere_;
  QObject context_;
  QTimer focusSettles_;
  int focusAsks_ = 0;
  std::unique_ptr<QObject> screenWatch_;
  QVariantAnimation fade_;
  QSize size_;
  Point anchor_;
  RectEdge edge_ = RectEdge::maxY;
  bool isShown_ = false;
  bool isClosing_ = false;
  /// Opened by a key on the tile, which has the keyboard again afterwards.
  bool isFromTile_ = false;
  bool hasHadFocus_ = false;
  /// Another panel had the focus when this one opened.
  bool replaces_ = false;
  xcb_window_t previousFocus_ = XCB_NONE;
  xcb_window_t previousActive_ = XCB_NONE;
  std::optional<QPoint> closingPress_;
  QElapsedTimer sinceClosingPress_;
  QElapsedTimer sinceOpening_;
};

} // namespace tavrin
