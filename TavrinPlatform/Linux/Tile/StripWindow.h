#pragma once

#include "TavrinPlatform/DockTile.h"
#include "TavrinPlatform/Linux/Base/LayerShell.h"
#include "TavrinPlatform/Linux/Edge/KeyWindow.h"
#include "TavrinPlatform/Linux/Tile/TileLabel.h"

#include <QAbstractNativeEventFilter>
#include <QBackingStore>
#include <QBasicTimer>
#include <QImage>
#include <QVariantAnimation>
#include <QWindow>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tavrin {

/// The borderless window of one tile: a dock, on every desktop, which nobody but itself gives the
/// keyboard. Where
/// no compositor mixes it with what lies under it, it is cut to the outline of its picture.
class StripWindow final : public QWindow, private QAbstractNativeEventFilter {
public:
  StripWindow();
  ~StripWindow() override;

  /// Shows the window there, as a dock window or as one that no window manager cares for.
  void moveTo(const QRect& frame, bool isUnmanaged);
  /// Shows the window there as a surface of the layer shell, which outlives this.
  void moveTo(const QRect& frame, LayerShell& layers);
  /// Has the picture come from beyond the edge, away from which `inwards` leads, or go there; at
  /// once where it is not seen to move. `done` is told when it is away.
  void slide(bool isIn, QPointF inwards, bool isAnimated, std::function<void()> done);
  void setPicture(const QImage& image, double scale);
  void setLabel(const QString& name, const QString& value);
  /// Wears a ring and is urgent to the window manager, until it is taken back; before that it hops
  /// a few times along `way`, as long as a tile's side, or not at all where `way` is null.
  void setAttention(bool isWanted, QPointF way);

  /// Whether changes of the label are told to assistive technology.
  void setAnnouncing(bool isAnnouncing) { isAnnouncing_ = isAnnouncing; }

  /// Wears a ring of its own while it has the keyboard.
  void setFocusRing(bool isWanted);
  bool hasFocusRing() const { return hasFocusRing_; }
  /// The layer shell that the window is a surface of; null on an X server.
  LayerShell* layers() const { return layers_; }
  /// Where it stands, also on a layer shell, of which the toolkit is not told.
  QRect place() const { return {home_, size()}; }
  /// Asks the layer shell for the keyboard, or gives it back.
  void holdKeys(bool isWanted);

  /// What is dragged over the tile, and whether it would be taken.
  enum class Drag { none, taken, refused };
  Drag drag() const { return drag_; }

  /// What the picture shows, for tooltips and assistive technology.
  const TileLabel<QString>& label() const { return label_; }
  /// The user's name for the widget; of one without, what its picture is called.
  QString name() const { return title().isEmpty() ? label_.name : title(); }
  /// The picture's buttons, in points of the window.
  void setButtons(std::vector<DockTile::Button> buttons);
  const std::vector<DockTile::Button>& buttons() const { return buttons_; }

  /// Presses the whole tile, as a click beside its buttons does.
  void press();

  /// The pointer, or something that is dragged, has come over the window, or has left it.
  std::function<void(bool isInside)> onPointer;
  std::function<void(bool isOver)> onDragOver;
  std::function<void(QPointF)> onClick;
  std::function<bool(QPointF)> onHover;
  std::function<bool()> takesFiles;
  std::function<bool(const std::vector<std::filesystem::path>&)> onDrop;
  std::function<void()> onExpose;
  /// A key while the window has the keyboard; whether it was used.
  std::function<bool(const QKeyEvent&)> onKey;
  std::function<void(bool hasFocus)> onFocus;
  /// The window is about to be shown, anew or for the first time.
  std::function<void(bool isUnmanaged)> onMake;

  QAccessibleInterface* accessibleRoot() const override;

protected:
  void paintEvent(QPaintEvent*) override;
  void resizeEvent(QResizeEvent* event) override;
  void exposeEvent(QExposeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  bool event(QEvent* event) override;
  void timerEvent(QTimerEvent* event) override;

private:
  void moveBy(QPoint way);
  void update();
  void paint();
  void paintOn(QPaintDevice& device);
  bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;
  void becomeDockWindow();
  void watchCompositor();
  void updateOutline();
  void paintTile(QPainter& painter, double scale) const;
  void hover(QPointF place);
  bool handleDrag(QEvent* event);
  void setDrag(Drag drag);
  QRectF pictureRect() const;

  QImage picture_;
  /// Not the toolkit's window of pixels: that one keeps those of the old scale when the desktop's
  /// changes.
  std::unique_ptr<QBackingStore> store_;
  double storeScale_ = 0;
  TileLabel<QString> label_;
  std::vector<DockTile::Button> buttons_;
  QPoint home_;
  QPoint hovered_;
  QPointF hopWay_;
  LayerShell* layers_ = nullptr;
  QVariantAnimation hop_;
  QVariantAnimation slide_;
  /// How far beyond the edge the picture is, and where it is when it is all there.
  double away_ = 0;
  QPointF slideWay_;
  std::function<void()> slideDone_;
  QBasicTimer toolTip_;
  std::vector<QRect> outline_;
  bool isComposited_ = false;
  bool isCut_ = false;
  bool hasRing_ = false;
  Drag drag_ = Drag::none;
  bool isPressed_ = false;
  bool hasFocusRing_ = false;
  /// While the tile of a layer shell has the keyboard; ends itself.
  KeyWindow* keys_ = nullptr;
  bool isAnnouncing_ = false;
};

} // namespace tavrin
