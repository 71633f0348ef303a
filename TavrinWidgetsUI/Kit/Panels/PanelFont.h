#pragma once

#include <QFont>

namespace tavrin {

/// The kinds of text in a panel. Sizes in points of the panel (logical pixels).
enum class PanelTextStyle {
  body,      // 13
  title,     // 13 semibold: the widget's name, a row's title that stands out
  heading,   // 17 semibold: a phase, a city
  secondary, // 13, quieter
  caption,   // 11, quieter
  section,   // 11 semibold, quieter: the title above a list
  trouble,   // 13, in the trouble colour
};

/// The desktop's interface font in that kind's size and weight.
QFont panelFont(PanelTextStyle style);

} // namespace tavrin
