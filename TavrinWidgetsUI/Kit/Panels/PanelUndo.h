#pragma once

#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"

namespace tavrin {

/// Takes the last deletion in a panel back: a quiet button for the bottom row, and the desktop's
/// keys for undoing, such as Ctrl+Z. Hidden while there is nothing to take back.
class PanelUndo : public PanelButton {
public:
  explicit PanelUndo(std::function<void()> undo, QWidget* parent = nullptr);
  /// What would come back; empty for nothing.
  void setWhat(const QString& name);
};

} // namespace tavrin
