#pragma once

#include "TavrinPlatform/Linux/Base/LayerShell.h"

#include <QBackingStore>
#include <QWindow>
#include <functional>

namespace tavrin {

/// Has the keyboard for a tile of a layer shell, while it is shown: a tile is a dock to the
/// compositor, and there are some that give a dock no keys. There is nothing to be seen of it.
class KeyWindow final : public QWindow {
public:
  /// `layers` outlives this.
  KeyWindow(LayerShell& layers, QPoint place);
  /// Gives the keyboard back, and ends this.
  void end();

  std::function<void(QKeyEvent&)> onKey;
  std::function<void(bool hasFocus)> onFocus;

protected:
  void exposeEvent(QExposeEvent*) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent*) override { onFocus(true); }
  void focusOutEvent(QFocusEvent*) override { onFocus(false); }

private:
  LayerShell& layers_;
  QBackingStore store_;
};

} // namespace tavrin
