#pragma once

#include <QWidget>
#include <optional>

namespace tavrin {

/// What drops down from a control. It lies inside the control's window, so that assistive technology
/// finds it there, every desktop shows it where it belongs, and no pointer is grabbed. It goes with a
/// press elsewhere, Escape, or the keyboard's leaving it.
class FormPopup : public QWidget {
public:
  /// `name` is what is chosen.
  FormPopup(QWidget* owner, const QString& name);

  /// Shows it as large as its content wants to be, below the owner where there is room.
  void open();
  /// To be called when the content has another size.
  void place();

protected:
  /// Points above or below the owner, whichever are more.
  int roomBeside() const;
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

private:
  bool holds(const QObject* object) const;

  QWidget* owner_;
  /// Chosen when it is opened, so that it stays where it is whatever its content becomes.
  std::optional<bool> isAbove_;
};

} // namespace tavrin
