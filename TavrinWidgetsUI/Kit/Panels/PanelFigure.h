#pragma once

#include "TavrinWidgetsUI/Kit/Views/ViewWidget.h"

namespace tavrin {

/// A large live figure, such as a time: every digit takes the same room, and the whole is laid
/// out from its widest form, so that nothing moves as it counts.
class PanelFigure : public ViewWidget {
public:
  /// `size` in points. `widest` is the widest form, such as "88:88"; empty for the text itself.
  explicit PanelFigure(int size = 44, const QString& widest = {}, QWidget* parent = nullptr);

  /// Paints again only when the text differs.
  void setText(const QString& text);
  const QString& text() const { return text_; }
  void setWidest(const QString& widest);
  /// A quieter unit after the number, such as "min"; empty for none.
  void setUnit(const QString& unit);
  void setAlignment(Qt::Alignment alignment);
  /// What the figure is, said before its value by assistive technology, such as "Time left".
  void setName(const QString& name);

protected:
  void changeEvent(QEvent* event) override;

private:
  void rebuild();

  int size_;
  QString widest_;
  QString text_;
  QString unit_;
  QString name_;
  Qt::Alignment alignment_ = Qt::AlignHCenter;
};

} // namespace tavrin
