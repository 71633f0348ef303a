#pragma once

#include <QObject>
#include <QPointer>
#include <QString>

class QFocusEvent;
class QFocusFrame;
class QWidget;

namespace tavrin {

/// Where a panel's keyboard is, and that it is seen.
///
/// When the panel opens, its main control has the focus: the one that was named, else the first
/// list with rows, field or prominent button, else the first control, the bottom row's last of all.
/// A list that gets it so begins with its first row, the newest. While the user has pressed nothing
/// yet the focus follows what the panel shows; later it does where what had it went away, and goes
/// back when that comes back at once, as with an undo.
///
/// The ring around it is shown from then on until the next mouse press, and from the next key
/// press. Watches the application's events only while its panel is on the screen.
class PanelFocus : public QObject {
public:
  explicit PanelFocus(QWidget* panel);
  ~PanelFocus() override;

  void setMain(QWidget* control) { main_ = control; }
  /// What is in there comes last, for the focus and for Tab.
  void setFooter(QWidget* footer) { footer_ = footer; }
  /// The panel opens.
  void open();
  /// The panel shows something else.
  void settle();

  bool eventFilter(QObject* object, QEvent* event) override;

private:
  void watch(bool on);
  void keyboardWasUsed(bool keyboard);
  void follow();
  void moved(QWidget* to, const QFocusEvent& event);
  bool takesFocus(const QWidget* widget) const;
  bool isInFooter(const QWidget* widget) const;
  QWidget* wanted() const;
  void place();
  void putFooterLast();

  QWidget* panel_;
  QPointer<QWidget> main_;
  QPointer<QWidget> footer_;
  /// What had the focus last.
  QPointer<QWidget> last_;
  QPointer<QFocusFrame> ring_;
  bool watching_ = false;
  bool isUntouched_ = false;
  bool isPlacing_ = false;
  /// What had the focus went away under it.
  bool isLost_ = false;
  /// What that was, until the user does something: it has the focus again when it comes back.
  QPointer<QWidget> gone_;
};

/// What the user was at in a panel, for the one that is made in its place: the control that has the
/// focus, by its name, what is typed there and selected, or its current row.
class PanelWork {
public:
  explicit PanelWork(const QWidget& panel);
  /// Where there is no such control the panel stays as it is.
  void resume(QWidget& panel) const;

private:
  void resumeIn(QWidget& control) const;

  QByteArray class_;
  QString name_;
  QString text_;
  /// The row's number in a list.
  int cursor_ = 0;
  int anchor_ = 0;
};

/// Left and Right on `from` are meant for `to`, such as a position beside a play button, while that
/// one can be used.
void passArrowKeys(QWidget& from, QWidget& to);

} // namespace tavrin
