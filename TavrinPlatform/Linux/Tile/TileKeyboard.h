#pragma once

#include "TavrinCore/Base/Lifetime.h"
#include "TavrinPlatform/Linux/Base/Bus.h"

#include <QTimer>
#include <string>

class QKeyEvent;
class QMenu;

namespace tavrin {

class StripWindow;

/// Lets the keyboard walk the row of tiles. One tile at a time has it, wears a ring and answers:
/// arrows and Tab hand it on to the next slot that runs, Home and End to the first and the last,
/// Return and the space bar open the panel, Menu and Shift+F10 list what the tile can do, Escape
/// gives the keyboard back to the window that had it.
class TileKeyboard {
public:
  /// Both outlive this; `identifier` is the slot's.
  TileKeyboard(Bus& bus, StripWindow& window, std::string_view identifier);
  ~TileKeyboard();

  /// Has the keyboard come to this tile. `cameFrom` names the window that had it before the row, as
  /// another tile hands it on; empty for the one that has it now. False where the tile is not
  /// shown.
  bool take(const std::string& cameFrom);
  /// The same again, once a panel that was opened from here is closed.
  void resume();
  bool hasIt() const { return hasIt_; }
  /// The tile is wanted for the keyboard, itself or by its menu, or is no longer.
  std::function<void(bool isWanted)> onHold;
  /// As `DockTile::onMenu`.
  std::function<void()> onMenu;

private:
  bool keyPressed(const QKeyEvent& event);
  void focusChanged(bool hasFocus);
  /// To the first of the slots that takes it, `step` by `step` from `slot` on.
  void handOn(int slot, int step);
  /// Until it is here: nobody says that a server did not give it.
  void ask();
  void giveBack();
  void showActions();

  Bus& bus_;
  StripWindow& window_;
  const int slot_;
  bool hasIt_ = false;
  std::uint32_t previous_ = 0;
  std::unique_ptr<QMenu> menu_;
  QTimer settles_;
  int asks_ = 0;
  Lifetime life_;
};

} // namespace tavrin
