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
  /// Prominent buttons, the focus ring, what is switched on, links.
  QColor accent;
  QColor accentHover;
  QColor accentPressed;
  /// Text and marks on the three accents.
  QColor onAccent;
  /// Quiet buttons, steppers, the trough of a segmented picker.
  QColor control;
  QColor controlHover;
  QColor controlPressed;
  /// Line and text editors; the chosen segment.
  QColor field;
  QColor fieldBorder;
  QColor rowHover;
  QColor rowPressed;
  QColor rowSelected;
  /// Sliders, switches that are off.
  QColor track;
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
