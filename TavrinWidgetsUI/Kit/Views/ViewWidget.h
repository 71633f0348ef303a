#pragma once

#include <QSizeF>
#include <QString>
#include <QWidget>
#include <memory>

namespace tavrin {

class AnyView;
class ViewPainter;

/// A declarative view inside a panel, at its own size: rings, gauges, faces, bars. Its buttons
/// can be clicked, and reached with Tab and pressed with Space or Return.
class ViewWidget : public QWidget {
public:
  explicit ViewWidget(QSizeF size, QWidget* parent = nullptr);
  ~ViewWidget() override;

  /// Shows `view` in place of what it showed.
  void setView(const AnyView& view);
  const AnyView& view() const { return *view_; }
  /// The size in points the view is laid out in.
  void setViewSize(QSizeF size);
  /// What assistive technology says, such as "Ring, 40 percent".
  void setName(const QString& name);

  bool hasButtons() const;
  /// Presses the button that has the keyboard, else the first one.
  void press();

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  bool focusNextPrevChild(bool next) override;
  void focusInEvent(QFocusEvent* event) override;
  /// The size `view` takes without bounds.
  QSizeF measure(const AnyView& view);

private:
  void adoptButtons();

  std::unique_ptr<AnyView> view_;
  std::unique_ptr<ViewPainter> painter_;
  QSizeF size_;
  bool isNamed_ = false;
  /// The button that has the keyboard, -1 for none.
  int button_ = -1;
};

} // namespace tavrin
