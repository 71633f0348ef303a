#include "TavrinPlatform/Linux/Tile/StripWindow.h"

#include "TavrinCore/Base/FileURL.h"
#include "TavrinPlatform/Linux/Base/X11.h"
#include "TavrinPlatform/Linux/Edge/TileOutline.h"
#include "TavrinPlatform/Linux/Tile/TileAccessibility.h"
#include "TavrinPlatform/Linux/Tile/TileMarks.h"
#include "TavrinPlatform/PlainToolTip.h"

#include <QCoreApplication>
#include <QDropEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <cstring>
#include <xcb/shape.h>
#include <xcb/xfixes.h>

namespace tavrin {

namespace {

constexpr int toolTipDelay = 700;
constexpr int hopDuration = 2'400;
constexpr int hops = 4;
constexpr double hopHeightRatio = 0.35;
constexpr int slideDuration = 180;
constexpr std::uint32_t everyDesktop = 0xFFFFFFFF;
constexpr const char* demandsAttention = "_NET_WM_STATE_DEMANDS_ATTENTION";
/// Not "stays on top": a dock is above ordinary windows already, and what is on top of all is above
/// a fullscreen window, too.
constexpr auto ownFlags = Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus;

} // namespace

StripWindow::StripWindow() {
  setFlags(ownFlags);
  QSurfaceFormat format;
  format.setAlphaBufferSize(8);
  setFormat(format);
  hop_.setDuration(hopDuration);
  hop_.setStartValue(0.0);
  hop_.setEndValue(1.0);
  connect(&hop_, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
    const double phase = value.toDouble() * hops;
    const double fading = 1 - value.toDouble();
    const double lift = std::abs(std::sin(phase * M_PI)) * fading * hopHeightRatio;
    moveBy((hopWay_ * lift).toPoint());
  });
  slide_.setDuration(slideDuration);
  slide_.setEasingCurve(QEasingCurve::OutCubic);
  connect(&slide_, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
    away_ = value.toDouble();
    update();
  });
  connect(&slide_, &QVariantAnimation::finished, this, [this] {
    if (away_ == 1 && slideDone_)
      slideDone_();
  });
}

void StripWindow::slide(bool isIn, QPointF inwards, bool isAnimated, std::function<void()> done) {
  slide_.stop();
  slideWay_ = -inwards;
  slideDone_ = std::move(done);
  const double target = isIn ? 0 : 1;
  if (isAnimated && away_ != target) {
    slide_.setStartValue(away_);
    slide_.setEndValue(target);
    slide_.start();
    return;
  }
  away_ = target;
  update();
  if (!isIn && slideDone_)
    slideDone_();
}

StripWindow::~StripWindow() {
  delete keys_;
  if (auto* application = QCoreApplication::instance())
    application->removeNativeEventFilter(this);
}

void StripWindow::moveTo(const QRect& frame, bool isUnmanaged) {
  home_ = frame.topLeft();
  const auto wanted = isUnmanaged ? ownFlags | Qt::BypassWindowManagerHint : ownFlags;
  if (flags() != wanted) {
    // Managers ask a window whether it is theirs when it is shown.
    setVisible(false);
    setFlags(wanted);
  }
  setGeometry(frame);
  if (handle() == nullptr) {
    create();
    watchCompositor();
    updateOutline(); // The first picture is here before the window.
  }
  if (isVisible())
    return;
  becomeDockWindow();
  if (onMake)
    onMake(isUnmanaged);
  show();
}

void StripWindow::moveTo(const QRect& frame, LayerShell& layers) {
  home_ = frame.topLeft();
  layers_ = &layers;
  layers.put(*this, {frame, LayerShell::Level::top, false});
  if (!isVisible())
    show();
}

void StripWindow::moveBy(QPoint way) {
  const QPoint place = home_ + way;
  if (layers_ == nullptr)
    setPosition(place);
  else if (isVisible())
    layers_->put(*this, {QRect(place, size()), LayerShell::Level::top, false});
}

void StripWindow::setPicture(const QImage& image, double scale) {
  const bool isSame = picture_.size() == image.size();
  const QImage::Format format = QImage::Format_ARGB32_Premultiplied;
  if (isSame && image.format() == format && picture_.isDetached()) {
    for (int y = 0; y < image.height(); ++y)
      std::memcpy(picture_.scanLine(y), image.constScanLine(y),
                  static_cast<std::size_t>(image.width()) * 4);
  } else {
    picture_ = image.convertToFormat(format);
    picture_.detach();
  }
  picture_.setDevicePixelRatio(scale);
  updateOutline();
  update();
}

void StripWindow::setButtons(std::vector<DockTile::Button> buttons) {
  buttons_ = std::move(buttons);
}

void StripWindow::setLabel(const QString& name, const QString& value) {
  using Change = TileLabel<QString>::Change;
  const Change change = label_.set(name, value);
  if (change != Change::none && isAnnouncing_)
    announceTileChange(*this, change == Change::name && title().isEmpty());
}

void StripWindow::setAttention(bool isWanted, QPointF way) {
  hasRing_ = isWanted;
  hopWay_ = way;
  hop_.stop();
  moveBy({});
  if (!way.isNull())
    hop_.start();
  // Not the toolkit's alert, which only an activation of the window would end.
  if (handle() != nullptr)
    x11::setState(static_cast<xcb_window_t>(winId()), demandsAttention, isWanted);
  update();
}

void StripWindow::setFocusRing(bool isWanted) {
  if (std::exchange(hasFocusRing_, isWanted) != isWanted)
    update();
}

void StripWindow::holdKeys(bool isWanted) {
  if (layers_ == nullptr || isWanted == (keys_ != nullptr))
    return;
  if (!isWanted) {
    std::exchange(keys_, nullptr)->end();
    // Nobody says so of a window that goes.
    if (onFocus)
      onFocus(false);
    return;
  }
  keys_ = new KeyWindow(*layers_, home_);
  keys_->onKey = [this](QKeyEvent& event) { keyPressEvent(&event); };
  keys_->onFocus = [this](bool hasFocus) {
    if (onFocus)
      onFocus(hasFocus);
  };
  keys_->show();
}

QAccessibleInterface* StripWindow::accessibleRoot() const {
  return accessibleTile(const_cast<StripWindow*>(this));
}

QRectF StripWindow::pictureRect() const {
  const QSizeF points = picture_.deviceIndependentSize();
  const QPointF place((width() - points.width()) / 2, (height() - points.height()) / 2);
  const QPointF beyond(slideWay_.x() * points.width(), slideWay_.y() * points.height());
  return {place + beyond * away_, points};
}

void StripWindow::paintEvent(QPaintEvent*) {
  paint();
}

void StripWindow::update() {
  // Else it is painted when it is seen.
  if (isExposed())
    requestUpdate();
}

void StripWindow::paint() {
  if (!isExposed())
    return;
  if (!store_ || storeScale_ != devicePixelRatio()) {
    store_ = std::make_unique<QBackingStore>(this);
    storeScale_ = devicePixelRatio();
  }
  if (store_->size() != size())
    store_->resize(size());
  const QRect whole(QPoint(), size());
  store_->beginPaint(whole);
  paintOn(*store_->paintDevice());
  store_->endPaint();
  store_->flush(whole);
}

void StripWindow::paintOn(QPaintDevice& device) {
  QPainter painter(&device);
  painter.setCompositionMode(QPainter::CompositionMode_Source);
  painter.fillRect(QRect(QPoint(), size()), Qt::transparent);
  const bool isDrawn = layers_ != nullptr && layers_->draw(*this, [this](QImage& image) {
    QPainter ownPixels(&image);
    paintTile(ownPixels, image.devicePixelRatio());
  });
  if (!isDrawn)
    paintTile(painter, devicePixelRatio());
}

void StripWindow::paintTile(QPainter& painter, double scale) const {
  painter.setCompositionMode(QPainter::CompositionMode_Source);
  if (!picture_.isNull()) {
    // Whole pixels, else the picture would be resampled.
    const QPointF place = pictureRect().topLeft() * scale;
    painter.drawImage(QPointF(std::floor(place.x()), std::floor(place.y())) / scale, picture_);
  }
  painter.setRenderHint(QPainter::Antialiasing);
  if (hasRing_)
    paintAttentionRing(painter, pictureRect());
  if (drag_ == Drag::refused)
    paintRefusal(painter, pictureRect());
  if (hasFocusRing_ || drag_ == Drag::taken)
    paintAccentRing(painter, pictureRect());
  if (drag_ == Drag::taken)
    paintCopySign(painter, pictureRect());
}

void StripWindow::setDrag(Drag drag) {
  if (std::exchange(drag_, drag) == drag)
    return;
  update();
  if (onDragOver)
    onDragOver(drag != Drag::none);
}

void StripWindow::resizeEvent(QResizeEvent* event) {
  QWindow::resizeEvent(event);
  updateOutline();
}

void StripWindow::exposeEvent(QExposeEvent* event) {
  QWindow::exposeEvent(event);
  if (onExpose)
    onExpose();
}

void StripWindow::mousePressEvent(QMouseEvent* event) {
  isPressed_ = event->button() == Qt::LeftButton;
  toolTip_.stop();
}

void StripWindow::mouseReleaseEvent(QMouseEvent* event) {
  const bool isInside = QRectF(QPointF(), QSizeF(size())).contains(event->position());
  if (event->button() == Qt::LeftButton && std::exchange(isPressed_, false) && isInside && onClick)
    onClick(event->position() - pictureRect().topLeft());
}

void StripWindow::mouseMoveEvent(QMouseEvent* event) {
  hover(event->position());
}

void StripWindow::press() {
  // A place outside every button.
  if (onClick)
    onClick(QPointF(-1, -1));
}

void StripWindow::keyPressEvent(QKeyEvent* event) {
  event->setAccepted(onKey && onKey(*event));
}

void StripWindow::focusInEvent(QFocusEvent*) {
  if (onFocus)
    onFocus(true);
}

void StripWindow::focusOutEvent(QFocusEvent*) {
  if (onFocus)
    onFocus(false);
}

void StripWindow::hover(QPointF place) {
  hovered_ = place.toPoint();
  const bool isOverButton = onHover && onHover(place - pictureRect().topLeft());
  if (isOverButton != (cursor().shape() == Qt::PointingHandCursor))
    setCursor(isOverButton ? Qt::PointingHandCursor : Qt::ArrowCursor);
  if (!label_.name.isEmpty() && !isPressed_)
    toolTip_.start(toolTipDelay, this);
}

bool StripWindow::event(QEvent* event) {
  switch (event->type()) {
  case QEvent::DragEnter:
  case QEvent::DragMove:
  case QEvent::Drop:
    return handleDrag(event);
  case QEvent::DragLeave:
    setDrag(Drag::none);
    return true;
  case QEvent::UpdateRequest:
    paint();
    return true;
  case QEvent::Enter:
    if (onPointer)
      onPointer(true);
    break;
  case QEvent::Leave:
    toolTip_.stop();
    if (onPointer)
      onPointer(false);
    break;
  default:
    break;
  }
  return QWindow::event(event);
}

bool StripWindow::handleDrag(QEvent* event) {
  auto* drag = static_cast<QDropEvent*>(event);
  const QByteArray list = drag->mimeData()->data(QStringLiteral("text/uri-list"));
  const auto paths = pathsOfURIList({list.constData(), static_cast<std::size_t>(list.size())});
  const auto action =
      drag->possibleActions().testFlag(Qt::CopyAction) ? Qt::CopyAction : Qt::LinkAction;
  bool isAccepted = !paths.empty() && takesFiles && takesFiles() && onDrop &&
                    drag->possibleActions().testFlag(action);
  if (isAccepted && event->type() == QEvent::Drop)
    isAccepted = onDrop(paths);
  setDrag(event->type() == QEvent::Drop ? Drag::none : isAccepted ? Drag::taken : Drag::refused);
  // Never as a move: its source would then delete the files.
  if (isAccepted) {
    drag->setDropAction(action);
    drag->accept();
  } else {
    drag->ignore();
  }
  return true;
}

void StripWindow::timerEvent(QTimerEvent* event) {
  if (event->timerId() != toolTip_.timerId()) {
    QWindow::timerEvent(event);
    return;
  }
  toolTip_.stop();
  // The toolkit takes a layer to stand at the desktop's corner.
  showPlainToolTip(layers_ == nullptr ? QCursor::pos() : home_ + hovered_, name());
}

void StripWindow::becomeDockWindow() {
  auto* x = x11::connection();
  if (x == nullptr)
    return;
  const auto window = static_cast<xcb_window_t>(winId());
  x11::setNumbers(window, "_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM,
                  {x11::atom("_NET_WM_WINDOW_TYPE_DOCK")});
  std::vector<std::uint32_t> state = {x11::atom("_NET_WM_STATE_STICKY"),
                                      x11::atom("_NET_WM_STATE_SKIP_TASKBAR"),
                                      x11::atom("_NET_WM_STATE_SKIP_PAGER")};
  if (hasRing_)
    state.push_back(x11::atom(demandsAttention));
  x11::setNumbers(window, "_NET_WM_STATE", XCB_ATOM_ATOM, state);
  x11::setNumbers(window, "_NET_WM_DESKTOP", XCB_ATOM_CARDINAL, {everyDesktop});
}

void StripWindow::watchCompositor() {
  auto* x = x11::connection();
  if (x == nullptr)
    return;
  xcb_xfixes_select_selection_input(x, static_cast<xcb_window_t>(winId()),
                                    x11::atom("_NET_WM_CM_S0"),
                                    XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                        XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                        XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
  QCoreApplication::instance()->installNativeEventFilter(this);
  isComposited_ = x11::hasCompositor();
}

bool StripWindow::nativeEventFilter(const QByteArray&, void* message, qintptr*) {
  const auto* event = static_cast<const xcb_generic_event_t*>(message);
  static const auto* extension = xcb_get_extension_data(x11::connection(), &xcb_xfixes_id);
  const auto type = event->response_type & 0x7F;
  if (extension == nullptr || type != extension->first_event + XCB_XFIXES_SELECTION_NOTIFY)
    return false;
  const auto* change = reinterpret_cast<const xcb_xfixes_selection_notify_event_t*>(event);
  if (change->selection != x11::atom("_NET_WM_CM_S0"))
    return false;
  isComposited_ = change->owner != XCB_NONE;
  outline_.clear();
  updateOutline();
  return false;
}

void StripWindow::updateOutline() {
  auto* x = x11::connection();
  if (x == nullptr || handle() == nullptr)
    return;
  const auto window = static_cast<xcb_window_t>(winId());
  if (isComposited_ || picture_.isNull()) {
    if (std::exchange(isCut_, false))
      xcb_shape_mask(x, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, window, 0, 0, XCB_NONE);
    return;
  }
  const QPointF place = pictureRect().topLeft() * devicePixelRatio();
  isCut_ = true;
  auto runs = solidRuns(picture_, QPoint(static_cast<int>(std::floor(place.x())),
                                         static_cast<int>(std::floor(place.y()))));
  if (runs == outline_)
    return;
  std::vector<xcb_rectangle_t> rectangles;
  for (const QRect& run : runs)
    rectangles.push_back({static_cast<std::int16_t>(run.x()), static_cast<std::int16_t>(run.y()),
                          static_cast<std::uint16_t>(run.width()),
                          static_cast<std::uint16_t>(run.height())});
  xcb_shape_rectangles(x, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, XCB_CLIP_ORDERING_YX_SORTED,
                       window, 0, 0, static_cast<std::uint32_t>(rectangles.size()),
                       rectangles.data());
  outline_ = std::move(runs);
}

} // namespace tavrin
