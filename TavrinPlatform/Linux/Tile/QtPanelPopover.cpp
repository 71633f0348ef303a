#include "TavrinPlatform/Linux/Tile/QtPanelPopover.h"

#include "TavrinPlatform/Linux/Base/X11.h"
#include "TavrinPlatform/Linux/Tile/StripWindow.h"
#include "TavrinPlatform/Qt/TileSurface.h"

#include <QApplication>
#include <QScreen>
#include <QTimer>
#include <QWindow>
#include <algorithm>
#include <cmath>

namespace tavrin {
namespace {

constexpr int openingMilliseconds = 120;
constexpr int closingMilliseconds = 80;
constexpr double rise = 4;
/// The first frame is to be seen at once, not a transparent window.
constexpr double firstOpacity = 0.35;
/// How long a window manager may take over moving the focus.
constexpr int focusDelay = 150;
/// How often the focus is asked for until it is settled.
constexpr int mostFocusAsks = 6;
/// Who opens it again sooner finds the window as it was.
constexpr int surfaceMilliseconds = 500;
/// For how long after its opening a panel that lost the focus takes it back.
constexpr int openingSettling = 1000;
constexpr int samePressMilliseconds = 500;
constexpr int samePressDistance = 64;
constexpr double screenMargin = 4;
/// On a panel's window: the window that was active before it.
constexpr const char* panelMark = "_TAVRIN_PANEL";

QRectF availableAt(QPointF place) {
  const QScreen* screen = QGuiApplication::screenAt(place.toPoint());
  if (screen == nullptr)
    screen = QGuiApplication::primaryScreen();
  if (screen == nullptr)
    return {0, 0, 10'000, 10'000};
  return screen->availableGeometry();
}

/// From pixels of the root window to toolkit points: each screen has its own scale.
QPoint toolkitPlace(QPoint pixel) {
  for (const QScreen* screen : QGuiApplication::screens()) {
    const QRect points = screen->geometry();
    const double scale = screen->devicePixelRatio();
    // The toolkit keeps a screen's corner in pixels.
    const QRect pixels(points.topLeft(), (QSizeF(points.size()) * scale).toSize());
    if (pixels.contains(pixel))
      return points.topLeft() + (QPointF(pixel - points.topLeft()) / scale).toPoint();
  }
  return pixel;
}

bool isFocusNobodys() {
  const xcb_window_t holder = x11::focusWindow();
  return holder == XCB_NONE || holder == XCB_INPUT_FOCUS_POINTER_ROOT || holder == x11::root();
}

/// The server's word where there is one: the toolkit may not have heard yet.
bool isFocusOurs() {
  if (x11::connection() == nullptr)
    return QGuiApplication::focusWindow() != nullptr;
  const xcb_window_t holder = x11::focusWindow();
  return std::ranges::any_of(QGuiApplication::topLevelWindows(), [holder](QWindow* window) {
    return window->handle() != nullptr && window->isVisible() && window->winId() == holder;
  });
}

bool isPanel(xcb_window_t window) {
  return !x11::numbers(window, panelMark, 1).empty();
}

StripWindow* ownTile() {
  for (QWindow* window : QGuiApplication::topLevelWindows())
    if (auto* tile = dynamic_cast<StripWindow*>(window))
      return tile;
  return nullptr;
}

bool isPointerOnTile() {
  const StripWindow* tile = ownTile();
  return tile != nullptr && tile->isVisible() &&
         tile->geometry().contains(x11::connection() != nullptr ? toolkitPlace(x11::pointer())
                                                                : QCursor::pos());
}

} // namespace

QtPanelPopover::QtPanelPopover(Environment environment) : environment_(std::move(environment)) {
  QObject::connect(qApp, &QGuiApplication::focusWindowChanged, &context_,
                   [this] { focusChanged(); });
  QObject::connect(&fade_, &QVariantAnimation::valueChanged, &context_, [this](const QVariant& v) {
    const double shown = v.toDouble();
    window_->setWindowOpacity(shown);
    const double lowered = isClosing_ ? 0 : rise * (1 - shown) / (1 - firstOpacity);
    window_->setLowered(static_cast<int>(std::lround(lowered)));
  });
  focusSettles_.setSingleShot(true);
  QObject::connect(&focusSettles_, &QTimer::timeout, &context_, [this] { settleFocus(); });
  QObject::connect(&fade_, &QVariantAnimation::finished, &context_, [this] {
    if (isClosing_)
      disappear();
  });
}

QtPanelPopover::~QtPanelPopover() = default;

PopoverWindow& QtPanelPopover::window() {
  if (!window_) {
    layers_ = environment_.layers ? environment_.layers() : nullptr;
    window_ = std::make_unique<PopoverWindow>(layers_ != nullptr);
    if (layers_ != nullptr)
      window_->showPixels = [this](const auto& paint) {
        return window_->windowHandle() != nullptr && layers_->draw(*window_->windowHandle(), paint);
      };
    window_->onEscape = [this] { close(); };
    window_->onContentPaletteChange = [this] {
      if (isShown_)
        updatePalette();
    };
  }
  return *window_;
}

void QtPanelPopover::setContent(QWidget* content) {
  window().setContent(content);
  if (!isShown_)
    return;
  updatePalette();
  arrange();
}

QWidget* QtPanelPopover::content() const {
  return window_ ? window_->content() : nullptr;
}

void QtPanelPopover::setContentSize(QSize size) {
  if (size == size_)
    return;
  size_ = size;
  if (isShown_)
    arrange();
}

void QtPanelPopover::arrange() {
  const QPointF tip = toolkitPoint(anchor_);
  const auto arrow = PopoverLayout::arrowAt(edge_);
  const QRectF strip(environment_.strip ? environment_.strip() : QRect());
  const QRectF room = PopoverLayout::roomBeside(strip, arrow, availableAt(tip));
  QSize size = size_.isEmpty() && content() != nullptr ? content()->sizeHint() : size_;
  const double most = room.height() - 2 * screenMargin - PopoverLayout::arrowLength;
  size.setHeight(std::min(size.height(), static_cast<int>(most)));
  window().arrange(PopoverLayout::make(tip, arrow, size, room, screenMargin));
  if (isShown_ && window_->isVisible())
    QTimer::singleShot(focusDelay, &context_, [this] { compareWithServer(); });
  if (layers_ != nullptr && window_->isVisible())
    put();
  if (elsewhere_)
    coverOthers();
}

/// As a surface of the layer shell, which has the keyboard to itself while it is there.
void QtPanelPopover::put() {
  window_->winId();
  // Below what drops down from it.
  layers_->put(*window_->windowHandle(), {window_->frame(), LayerShell::Level::top, true});
  layers_->watchPresses({environment_.strip(), window_->shape()}, [this] { leave(); });
}

void QtPanelPopover::coverOthers() {
  const double scale = window_->devicePixelRatioF();
  const auto pixels = [scale](const QRect& part) {
    return QTransform::fromScale(scale, scale).mapRect(QRectF(part)).toAlignedRect();
  };
  elsewhere_ = std::make_unique<PressWindow>(
      std::vector{pixels(environment_.strip()), pixels(window_->shape())}, [this] { leave(); });
}

void QtPanelPopover::compareWithServer() {
  if (!isShown_ || x11::connection() == nullptr)
    return;
  const QRect pixels = x11::frame(static_cast<xcb_window_t>(window_->winId()));
  if (!pixels.isNull())
    window_->holdAgainst(QRect(toolkitPlace(pixels.topLeft()),
                               (QSizeF(pixels.size()) / window_->devicePixelRatioF()).toSize()));
}

void QtPanelPopover::updatePalette() {
  PopoverPalette palette =
      environment_.prefersDarkAppearance() ? PopoverPalette::dark() : PopoverPalette::light();
  const QWidget* widget = content();
  if (widget != nullptr && widget->testAttribute(Qt::WA_SetPalette)) {
    const QColor ground = widget->palette().color(QPalette::Window);
    const bool isDark = ground.lightnessF() < 0.5;
    palette = {ground, (isDark ? PopoverPalette::dark() : PopoverPalette::light()).hairline};
  }
  window().setPalette(palette);
}

void QtPanelPopover::show(Point anchor, RectEdge edge) {
  anchor_ = anchor;
  edge_ = edge;
  if (isShown_) {
    arrange();
    return;
  }
  isShown_ = true;
  isClosing_ = false;
  fade_.stop();
  const bool isOurs = isFocusOurs();
  isFromTile_ = environment_.hasTileKeys && environment_.hasTileKeys();
  if (environment_.shownChanged)
    environment_.shownChanged(true);
  replaces_ = isPanel(x11::focusWindow()) || isPanel(x11::activeWindow());
  if (!isOurs) {
    previousFocus_ = x11::focusWindow();
    previousActive_ = x11::activeWindow();
    // In place of another panel: the focus goes where that one would have given it.
    if (const auto behind = x11::numbers(previousActive_, panelMark, 1); !behind.empty())
      previousActive_ = behind.front();
  }
  hasHadFocus_ = false;
  sinceOpening_.start();
  updatePalette();
  arrange();
  // The room may change after the tile did: a window manager hears of the tile's own first.
  screenWatch_ = std::make_unique<QObject>();
  for (const QScreen* screen : QGuiApplication::screens())
    QObject::connect(screen, &QScreen::availableGeometryChanged, screenWatch_.get(),
                     [this] { arrange(); });
  if (x11::connection() != nullptr)
    x11::setNumbers(static_cast<xcb_window_t>(window_->winId()), panelMark, XCB_ATOM_WINDOW,
                    {previousActive_});
  appear();
  takeFocus();
  QTimer::singleShot(0, &context_, [this] {
    if (isShown_ && environment_.isOnCompositor && x11::connection() != nullptr)
      coverOthers();
    if (isShown_ && !presses_ && x11::connection() != nullptr)
      presses_ = std::make_unique<PressWatcher>([this](QPoint pixel) { pressedAt(pixel); });
  });
}

bool QtPanelPopover::isAnimated() const {
  return x11::connection() != nullptr && x11::hasCompositor() &&
         !environment_.prefersReducedMotion();
}

void QtPanelPopover::appear() {
  if (isAnimated()) {
    window_->setWindowOpacity(firstOpacity);
    fade_.setDuration(openingMilliseconds);
    fade_.setStartValue(firstOpacity);
    fade_.setEndValue(1.0);
    fade_.start();
  } else {
    window_->setWindowOpacity(1);
    window_->setLowered(0);
  }
  if (layers_ != nullptr)
    put();
  window_->show();
  window_->raise();
  if (layers_ != nullptr)
    window_->update();
}

void QtPanelPopover::takeFocus() {
  if (layers_ != nullptr)
    return;
  window_->activateWindow();
  if (x11::connection() == nullptr)
    return;
  focusAsks_ = mostFocusAsks;
  // An unmapped window cannot have the focus: wait for the first exposure.
  focusSettles_.start(x11::hasWindowManager() ? focusDelay : focusDelay / 10);
}

/// A server gives the focus to no window that a manager is just taking over, and does not say so;
/// and a manager that comes moves the focus itself. It is asked for as long as that may take.
void QtPanelPopover::settleFocus() {
  if (!isShown_)
    return;
  // Some managers count a title bar in that the panel does not have.
  compareWithServer();
  const auto own = static_cast<xcb_window_t>(window_->winId());
  // A busy manager may take long over a window; until then there is nothing to give the focus to.
  const bool isThere = x11::isViewable(own);
  // Whom a manager has taken to another program's window is not fetched back: the panel goes.
  const bool mayLeave = hasHadFocus_ && !replaces_;
  const bool isElsewhere = mayLeave && x11::hasWindowManager() && !isFocusNobodys();
  if (isThere && !isElsewhere && !isFocusOurs())
    x11::setFocus(own);
  // Opened again before the server saw it go, it never lost the focus there, but did here.
  if (isFocusOurs() && QApplication::activeWindow() == nullptr)
    QApplication::setActiveWindow(window_.get());
  if (!isThere || --focusAsks_ > 0)
    focusSettles_.start(focusDelay);
  else if (isElsewhere && !isFocusOurs())
    leave();
}

void QtPanelPopover::managerChanged() {
  if (isShown_)
    takeFocus();
}

void QtPanelPopover::close() {
  if (!isShown_)
    return;
  isShown_ = false;
  presses_.reset();
  elsewhere_.reset();
  screenWatch_.reset();
  if (layers_ != nullptr)
    layers_->watchPresses({}, nullptr);
  if (isAnimated()) {
    isClosing_ = true;
    fade_.stop();
    fade_.setDuration(closingMilliseconds);
    fade_.setStartValue(window_->windowOpacity());
    fade_.setEndValue(0.0);
    fade_.start();
  } else {
    disappear();
  }
  if (environment_.shownChanged)
    environment_.shownChanged(false);
  if (onClose)
    onClose();
  if (environment_.hasClosed)
    environment_.hasClosed();
}

void QtPanelPopover::disappear() {
  const bool hadFocus = isFocusOurs();
  isClosing_ = false;
  fade_.stop();
  if (layers_ != nullptr) {
    layers_->withdraw(*window_->windowHandle());
    window_->hide();
    window_->releaseSurface();
    giveFocusBack(hadFocus);
    return;
  }
  window_->hide();
  giveFocusBack(hadFocus);
  QTimer::singleShot(surfaceMilliseconds, &context_, [this] {
    if (!isShown_ && !isClosing_)
      window_->releaseSurface();
  });
}

void QtPanelPopover::giveFocusBack(bool hadFocus) {
  if (!hadFocus)
    return;
  if (isFromTile_) {
    environment_.resumeTileKeys();
    return;
  }
  if (x11::connection() == nullptr)
    return;
  if (!x11::hasWindowManager()) {
    if (isFocusNobodys() &&
        (!x11::frame(previousFocus_).isNull() || previousFocus_ == XCB_INPUT_FOCUS_POINTER_ROOT))
      x11::setFocus(previousFocus_);
    return;
  }
  // Most window managers do it themselves when the panel goes.
  QTimer::singleShot(focusDelay / 3, &context_, [this, wanted = previousActive_] {
    const auto active = x11::activeWindow();
    // Another panel that is active has taken this one's place.
    if (!isShown_ && wanted != XCB_NONE && active != wanted && !isPanel(active) &&
        QGuiApplication::focusWindow() == nullptr && x11::isViewable(wanted))
      x11::requestActive(wanted);
  });
}

void QtPanelPopover::pressedAt(QPoint pixel) {
  if (!isShown_)
    return;
  const QPoint place = toolkitPlace(pixel);
  for (const QWindow* other : QGuiApplication::topLevelWindows()) {
    if (!other->isVisible() || !other->geometry().contains(place))
      continue;
    if (other != window_->windowHandle() || window_->covers(place))
      return;
  }
  closingPress_ = place;
  sinceClosingPress_.start();
  // Later: the watcher that called is about to go.
  QTimer::singleShot(0, &context_, [this] { leave(); });
}

bool QtPanelPopover::hasJustBeenClosedAt(Point place) const {
  if (!closingPress_ || sinceClosingPress_.hasExpired(samePressMilliseconds))
    return false;
  return (*closingPress_ - toolkitPoint(place).toPoint()).manhattanLength() < samePressDistance;
}

void QtPanelPopover::focusChanged() {
  if (QGuiApplication::focusWindow() != nullptr) {
    hasHadFocus_ |= isShown_;
    return;
  }
  if (!isShown_ || !hasHadFocus_)
    return;
  const bool isOnTile = isPointerOnTile();
  // The panel that this one takes the place of goes a moment later, and with it the focus may go
  // astray. The user, who is still where the press was, is not who moved it.
  const bool isAstray = isOnTile && replaces_ && !sinceOpening_.hasExpired(openingSettling);
  QTimer::singleShot(isOnTile ? focusDelay : 0, &context_, [this, isOnTile, isAstray] {
    if (!isShown_ || QGuiApplication::focusWindow() != nullptr)
      return;
    // The press that took the focus still lasts: the tile will have the click.
    if (isOnTile && QGuiApplication::mouseButtons() != Qt::NoButton)
      return focusChanged();
    // A manager that ends lets go of the focus; without one, who goes elsewhere gives it to
    // somebody.
    if (isAstray || (isFocusNobodys() && !x11::hasWindowManager()))
      takeFocus();
    else
      leave();
  });
}

void QtPanelPopover::leave() {
  if (!isShown_)
    return;
  environment_.resignedActive();
  close();
}

} // namespace tavrin
