#pragma once

#include <QString>

class QWidget;

namespace tavrin {

/// The one way to give a widget a tooltip: `words` may come from anywhere and are shown letter by
/// letter, never as markup. Empty for none.
void setPlainToolTip(QWidget* widget, const QString& words);

} // namespace tavrin
