#pragma once

#include <QSizeF>
#include <QString>
#include <QWidget>
#include <memory>

namespace tavrin {

class AnyView;

/// A declarative view inside a panel, at its own size: rings, gauges, faces, bars. Its buttons
/// can be clicked, and reached with Tab and pressed with Space.
class ViewWidget : public QWidget {
public:
  explicit ViewWidget(QSizeF size, QWidget* parent = nullptr);
  ~ViewWidget() override;

  /// Shows `view` in place of what it showed.
  void setView(const AnyView& view);
  /// The size in points the view is laid out in.
  void setViewSize(QSizeF size);
  /// What assistive technology says, such as "Ring, 40 percent".
  void setName(const QString& name);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;

private:
  QPointF viewPoint(QPointF position) const;

  std::unique_ptr<AnyView> view_;
  QSizeF size_;
};

} // namespace tavrin
