#include "TavrinPlatform/Linux/Tile/PopoverWindow.h"

#include "TavrinPlatform/Linux/Base/X11.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QScreen>
#include <QTimer>

namespace tavrin {

namespace {

constexpr int shadowReach = 18;
constexpr double shadowDrop = 4;
constexpr int shadowAlpha = 7;
constexpr int mostCorrections = 8;

/// Room for the shadow, as far as the screen reaches: a window manager moves a window that stands
/// beyond the edge, and the panel would jump. None beyond the arrow's tip: the tile is there, which
/// the shadow would darken, and where a manager frames the panel, take the clicks from.
QRect withShadow(const QRect& panel, PopoverLayout::Arrow arrow) {
  using Arrow = PopoverLayout::Arrow;
  const auto reach = [&](Arrow side) { return side == arrow ? 0 : shadowReach; };
  const QRect frame = panel.adjusted(-reach(Arrow::left), -reach(Arrow::top), reach(Arrow::right),
                                     reach(Arrow::bottom));
  const QScreen* screen = QGuiApplication::screenAt(panel.center());
  return screen == nullptr ? frame : (frame & screen->geometry()) | panel;
}

bool isOnWayland() {
  return QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

QAccessibleInterface* makeDialogue(const QString&, QObject* object) {
  auto* window = dynamic_cast<PopoverWindow*>(object);
  return window == nullptr ? nullptr : new QAccessibleWidget(window, QAccessible::Dialog);
}

} // namespace

PopoverWindow::PopoverWindow(bool hasPlace) : isPlain_(isOnWayland() && !hasPlace) {
  static const bool isInstalled = (QAccessible::installFactory(makeDialogue), true);
  static_cast<void>(isInstalled);
  if (isPlain_) {
    setWindowFlags(Qt::Dialog);
  } else {
    setWindowFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    setAttribute(Qt::WA_TranslucentBackground);
  }
  setAttribute(Qt::WA_QuitOnClose, false);
}

void PopoverWindow::setContent(QWidget* content) {
  if (content == content_)
    return;
  delete content_;
  content_ = content;
  if (content == nullptr)
    return;
  content->setParent(this);
  content->installEventFilter(this);
  placeContent();
  content->show();
  const auto takeTitle = [this](const QString& title) {
    setWindowTitle(title);
    setAccessibleName(title);
  };
  connect(content, &QWidget::windowTitleChanged, this, takeTitle);
  takeTitle(content->windowTitle());
  // Qt asks who takes the keys when a window becomes active; this one may be so already.
  if (isVisible() && isActiveWindow() && focusWidget() == nullptr)
    focusNextChild();
}

bool PopoverWindow::eventFilter(QObject* watched, QEvent* event) {
  if (watched == content_ && event->type() == QEvent::PaletteChange && onContentPaletteChange)
    onContentPaletteChange();
  return QWidget::eventFilter(watched, event);
}

void PopoverWindow::setPalette(const PopoverPalette& palette) {
  if (palette == palette_)
    return;
  palette_ = palette;
  update();
}

void PopoverWindow::arrange(const PopoverLayout& layout) {
  const QSize size = layout.body.size().toSize();
  if (isPlain_) {
    outline_ = QPainterPath();
    outline_.addRect(QRectF(QPointF(), QSizeF(size)));
    setFixedSize(size);
    contentPlace_ = QRect(QPoint(), size);
    placeContent();
    return;
  }
  const bool isComposited = x11::connection() == nullptr || x11::hasCompositor();
  const QRect frame = isComposited ? withShadow(layout.frame().toAlignedRect(), layout.arrow)
                                   : layout.frame().toAlignedRect();
  outline_ = layout.outline().translated(-frame.topLeft());
  frame_ = frame;
  corrections_ = 0;
  hasShadow_ = isComposited;
  setGeometry(frame);
  if (!isComposited) {
    setMask(outline_.toFillPolygon().toPolygon());
  } else if (x11::connection() != nullptr) {
    clearMask();
    // A click on the shadow is meant for what lies under it.
    const double scale = devicePixelRatioF();
    const QRectF area = outline_.boundingRect();
    const QRectF pixels(area.topLeft() * scale, area.size() * scale);
    x11::setInputAreas(static_cast<xcb_window_t>(winId()), {pixels.toAlignedRect()});
  }
  contentPlace_ = QRect(layout.body.topLeft().toPoint() - frame.topLeft(), size);
  placeContent();
  update();
}

void PopoverWindow::placeContent() {
  if (content_ != nullptr && !contentPlace_.isNull())
    content_->setGeometry(contentPlace_.translated(0, lowered_));
}

void PopoverWindow::setLowered(int points) {
  if (points == lowered_ || isPlain_)
    return;
  lowered_ = points;
  placeContent();
  update();
}

void PopoverWindow::moveEvent(QMoveEvent* event) {
  QWidget::moveEvent(event);
  geometryTold();
}

void PopoverWindow::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  geometryTold();
}

void PopoverWindow::geometryTold() {
  if (isPlain_ || !isVisible() || geometry() == frame_ || corrections_ >= mostCorrections)
    return;
  ++corrections_;
  QTimer::singleShot(0, this, [this] {
    if (isVisible() && geometry() != frame_)
      setGeometry(frame_);
  });
}

void PopoverWindow::holdAgainst(const QRect& actual) {
  const auto isFar = [](QPoint difference) { return difference.manhattanLength() > 2; };
  if (isPlain_ || !isVisible() || actual.isNull() ||
      !(isFar(actual.topLeft() - frame_.topLeft()) ||
        isFar({actual.width() - frame_.width(), actual.height() - frame_.height()})))
    return;
  // The toolkit asks for nothing that it takes to be so already.
  setGeometry(frame_.adjusted(0, 0, 1, 1));
  setGeometry(frame_);
}

bool PopoverWindow::covers(QPoint place) const {
  return isVisible() && outline_.contains(QPointF(mapFromGlobal(place)));
}

bool PopoverWindow::event(QEvent* event) {
  if (event->type() == QEvent::UpdateRequest && showPixels && isVisible())
    paintOwnPixels();
  return QWidget::event(event);
}

void PopoverWindow::paintOwnPixels() {
  const bool had = hasOwnPixels_;
  hasOwnPixels_ = showPixels([this](QImage& image) {
    paintsOwnPixels_ = true;
    render(&image);
    paintsOwnPixels_ = false;
  });
  // What is not seen through changes sides.
  if (had != hasOwnPixels_)
    update();
}

void PopoverWindow::paintEvent(QPaintEvent*) {
  if (hasOwnPixels_ && !paintsOwnPixels_)
    return;
  QPainter painter(this);
  if (isPlain_) {
    painter.fillRect(rect(), palette_.ground);
    return;
  }
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(0, lowered_);
  // Where nobody mixes windows the mask cuts whole pixels, and half a one would be half black.
  if (hasShadow_)
    paintShadow(painter);
  else
    painter.fillRect(rect(), palette_.ground);
  painter.fillPath(outline_, palette_.ground);
  painter.setPen(QPen(palette_.hairline, 1));
  painter.drawPath(outline_);
}

void PopoverWindow::paintShadow(QPainter& painter) const {
  // Ever wider strokes of little weight add up to a slope.
  painter.save();
  painter.translate(0, shadowDrop);
  for (int reach = 1; reach < shadowReach - static_cast<int>(shadowDrop); ++reach) {
    QPen pen(QColor(0, 0, 0, shadowAlpha), 2.0 * reach);
    pen.setJoinStyle(Qt::RoundJoin);
    painter.setPen(pen);
    painter.drawPath(outline_);
  }
  painter.restore();
}

void PopoverWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape && onEscape)
    onEscape();
  else
    QWidget::keyPressEvent(event);
}

void PopoverWindow::closeEvent(QCloseEvent* event) {
  event->ignore();
  if (onEscape)
    onEscape();
}

} // namespace tavrin
