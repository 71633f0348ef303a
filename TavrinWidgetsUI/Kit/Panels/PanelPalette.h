#pragma once

#include <QColor>
#include <QPalette>

namespace tavrin {

/// How a panel is to look; asked from the desktop and the widget when the panel opens.
struct PanelAppearance {
  bool dark = false;
  bool reducedMotion = false;
  /// The kind's tint; the accent is made from it.
  QColor tint = QColor(0x0A, 0x84, 0xFF);
  /// Black and white, and edges round what can be pressed.
  bool highContrast = false;
  bool operator==(const PanelAppearance&) const = default;
};

/// Every colour of a panel, opaque: what is mixed with the ground is mixed already. Text colours
/// have a contrast of at least 4.5 to 1 on each ground they may stand on.
struct PanelPalette {
  QColor ground;
  QColor text;
  QColor secondary;
  QColor disabledText;
  QColor hairline;
  /// Links, the focus ring, marks: legible on every ground.
  QColor accent;
  /// Prominent buttons, what is switched on, selected text; `onFill` is legible on all three.
  QColor fill;
  QColor fillHover;
  QColor fillPressed;
  QColor onFill;
  /// Quiet buttons, steppers, the trough of a segmented picker.
  QColor control;
  QColor controlHover;
  QColor controlPressed;
  /// Line and text editors.
  QColor field;
  QColor fieldBorder;
  /// The chosen segment.
  QColor chosen;
  QColor rowHover;
  QColor rowPressed;
  QColor rowSelected;
  /// Sliders, switches that are off.
  QColor track;
  /// The edge of a check box or switch that is off: 3 to 1 on the ground.
  QColor outline;
  /// Words and marks of what went wrong.
  QColor trouble;

  bool operator==(const PanelPalette&) const = default;

  static PanelPalette make(const PanelAppearance& appearance);
  /// The same colours as Qt hands them from a panel to its children.
  QPalette palette() const;
  /// Back from what `palette` made.
  static PanelPalette from(const QPalette& palette);
};

} // namespace tavrin
