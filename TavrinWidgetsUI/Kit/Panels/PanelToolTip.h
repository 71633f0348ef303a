#pragma once

#include <QString>

class QWidget;

namespace tavrin {

/// The one way to give a widget a tooltip: `words` may come from anywhere and are shown letter by
/// letter, never as markup. Empty for none. They are the widget's description to assistive
/// technology too, but where they are its name.
void setPlainToolTip(QWidget* widget, const QString& words);
/// What `setPlainToolTip` was given.
QString plainToolTip(const QWidget* widget);

} // namespace tavrin
