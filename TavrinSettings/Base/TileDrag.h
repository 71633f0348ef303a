#pragma once

#include "TavrinCore/Widgets/DockWidget.h"

#include <QObject>
#include <QPixmap>
#include <QPointer>
#include <functional>
#include <optional>
#include <string>

class QLabel;
class QWidget;

namespace tavrin {

/// What is being dragged: a widget, or a kind that is to become one.
struct DragLoad {
  std::optional<UUID> widget;
  std::string kind;
  int span = 1;
};

/// Dragging a tile about within one window. The source, which has the mouse, tells of its way; the
/// picture follows the pointer above everything else, and Escape ends it.
class TileDrag : public QObject {
public:
  explicit TileDrag(QWidget* window);
  ~TileDrag() override;

  bool isActive() const { return load_.has_value(); }
  const DragLoad& load() const { return *load_; }

  /// `grip` is where in the picture the pointer holds it, in points.
  void begin(DragLoad load, const QPixmap& picture, QPoint grip, QPoint globalPlace);
  void moveTo(QPoint globalPlace);
  void drop(QPoint globalPlace);
  void cancel();

  /// A word at the picture, such as what letting go does; empty for none.
  void setHint(const QString& hint);

  std::function<void(QPoint globalPlace)> onMove;
  std::function<void(QPoint globalPlace)> onDrop;
  /// It is over, dropped or not.
  std::function<void()> onEnd;

  bool eventFilter(QObject* object, QEvent* event) override;

private:
  void end();

  QWidget* window_;
  std::optional<DragLoad> load_;
  QPointer<QLabel> picture_;
  QPointer<QLabel> hint_;
  QPoint grip_;
};

} // namespace tavrin
