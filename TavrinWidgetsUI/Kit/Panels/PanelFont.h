#pragma once

#include <QFont>

namespace tavrin {

/// The kinds of text in a panel. Sizes in points of the panel (logical pixels), for a text scale of
/// 1.
enum class PanelTextStyle {
  body,      // 13
  title,     // 13 semibold: the widget's name, a row's title that stands out
  heading,   // 17 semibold: a phase, a city
  secondary, // 13, quieter
  caption,   // 11, quieter
  section,   // 11 semibold, quieter: the title above a list
  trouble,   // 13, in the trouble colour
};

/// The desktop's interface font in that kind's size and weight, by the text scale.
QFont panelFont(PanelTextStyle style);

/// How much larger than usual the user wants texts; 1 at first. Panels grow with it.
double panelTextScale();
/// Whether that is another scale than before: then panels are to be made again. Kept within 0.75
/// and 3, in steps of a twentieth.
bool setPanelTextScale(double scale);
/// A length in points that grows with the text.
int scaled(double points);

} // namespace tavrin
