#pragma once

#include "TavrinCore/Kinds/KeyboardLock/KeyboardLockSettings.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelView.h"
#include "TavrinWidgetsUI/Kit/Views/TileLayout.h"

#include <functional>

namespace tavrin {

class KeyboardLock;
class PanelButton;
class PanelText;
class ViewWidget;

inline constexpr QColor keyboardLockTint = palette::blue;

/// What the lock's pictures show.
struct KeyboardLockStatus {
  bool isLocked = false;
  bool locksPointer = true;
  /// Whole seconds until it unlocks by itself; none where it does not.
  std::optional<int> secondsLeft = {};
  int holdSeconds = 3;
  /// 0...1.
  double holdProgress = 0;

  static KeyboardLockStatus of(const KeyboardLock& lock);
  bool operator==(const KeyboardLockStatus&) const = default;
};

/// A keyboard, in a closed lock's company and on a tinted ground while it is held.
AnyView keyboardLockTileIcon(const KeyboardLockStatus& status, const TileSize& size);
/// With a button that locks, or unlocks.
AnyView keyboardLockWideTile(const QString& name, const KeyboardLockStatus& status,
                             const TileSize& size, const std::function<void()>& toggle);
/// What covers a screen of `size` points while locked. Without the pointer being held there is a
/// button, for which `unlock` is run.
AnyView keyboardLockScreen(const KeyboardLockStatus& status, const QSizeF& size,
                           const std::function<void()>& unlock);

/// "Holds the keyboard while you clean it."
QString keyboardLockDescription(bool locksPointer);
/// "Hold a click for 3 seconds to unlock."
QString holdHint(int holdSeconds);

class KeyboardLockPanelView final : public PanelView {
public:
  struct Actions {
    std::function<QString()> name;
    /// None where the lock is run from Tavrin's own Dock.
    std::function<void()> lock;
    std::function<void()> unlock;
    std::function<void()> edit;
  };
  KeyboardLockPanelView(const PanelAppearance& appearance, const KeyboardLock& lock,
                        Actions actions);
  void refresh() override;

private:
  const KeyboardLock& lock_;
  Actions actions_;
  ViewWidget* picture_;
  PanelText* description_;
  PanelText* hint_;
  PanelText* trouble_;
  PanelButton* button_;
};

} // namespace tavrin
