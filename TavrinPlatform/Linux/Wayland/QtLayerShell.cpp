#include "TavrinPlatform/Linux/Wayland/QtLayerShell.h"

#include "TavrinPlatform/Linux/Wayland/Outputs.h"
#include "TavrinPlatform/Linux/Wayland/ToolkitSurfaces.h"

#include <QGuiApplication>
#include <QImage>
#include <QPlatformSurfaceEvent>
#include <QScreen>
#include <QTimer>
#include <QWindow>
#include <algorithm>
#include <cmath>
#include <fstream>
#include <unistd.h>

namespace tavrin {

namespace {

constexpr std::uint32_t newestShell = 4;
/// From the output's very edges, whatever room others keep there.
constexpr std::int32_t wholeOutput = -1;
/// Answers of the compositor until a surface is configured: one or two, where nothing is amiss.
constexpr int mostRoundTrips = 10;

QScreen* screenOf(const QRect& frame) {
  QScreen* screen = QGuiApplication::screenAt(frame.center());
  return screen == nullptr ? QGuiApplication::primaryScreen() : screen;
}

std::uint32_t layerOf(LayerShell::Level level) {
  return level == LayerShell::Level::top ? ZWLR_LAYER_SHELL_V1_LAYER_TOP
                                         : ZWLR_LAYER_SHELL_V1_LAYER_OVERLAY;
}

/// Some compositors tell by the name what a surface is: a press on a dock moves no focus.
const char* nameOf(const LayerShell::Place& place) {
  return place.level == LayerShell::Level::top && !place.takesKeys ? "dock" : "tavrin";
}

void setPlace(zwlr_layer_surface_v1* surface, const QRect& frame, const QScreen& screen) {
  const QPoint corner = frame.topLeft() - screen.geometry().topLeft();
  zwlr_layer_surface_v1_set_size(surface, static_cast<std::uint32_t>(frame.width()),
                                 static_cast<std::uint32_t>(frame.height()));
  zwlr_layer_surface_v1_set_margin(surface, corner.y(), 0, 0, corner.x());
}

void setKeys(zwlr_layer_surface_v1* surface, const LayerShell::Place& place) {
  zwlr_layer_surface_v1_set_keyboard_interactivity(surface, place.takesKeys ? 1 : 0);
}

} // namespace

QtLayerShell::QtLayerShell(wl_display* display)
    : display_(display), registry_(std::make_unique<WaylandRegistry>(display)) {
  wl_display_roundtrip(display_);
  shell_.reset(registry_->bind<zwlr_layer_shell_v1>(zwlr_layer_shell_v1_interface, newestShell));
  if (shell_)
    qGuiApp->installEventFilter(this);
}

void QtLayerShell::put(QWindow& window, const Place& place) {
  auto known = layers_.find(&window);
  const QScreen* screen = screenOf(place.frame);
  // Neither comes to another output nor back.
  if (known != layers_.end() && screen != nullptr &&
      (known->second->isClosed || known->second->output != screen->name())) {
    withdraw(window);
    window.destroy();
    known = layers_.end();
  }
  if (known == layers_.end()) {
    give(window, place);
    return;
  }
  auto* surface = toolkit::surface(window);
  if (surface == nullptr || screen == nullptr)
    return;
  setPlace(known->second->surface.get(), place.frame, *screen);
  setKeys(known->second->surface.get(), place);
  known->second->frame = place.frame;
  window.setGeometry(place.frame);
  wl_surface_commit(surface);
}

void QtLayerShell::give(QWindow& window, const Place& place) {
  QScreen* screen = screenOf(place.frame);
  auto* output = screen == nullptr ? nullptr : toolkit::output(*screen);
  if (output == nullptr)
    return;
  toolkit::leaveToOthers(window);
  window.setGeometry(place.frame);
  window.create();
  auto* surface = toolkit::surface(window);
  if (surface == nullptr)
    return;
  auto& layer = *(layers_[&window] = std::make_unique<Layer>());
  layer.frame = place.frame;
  layer.output = screen->name();
  layer.closed = [this, &window] { closed(window); };
  layer.surface.reset(zwlr_layer_shell_v1_get_layer_surface(shell_.get(), surface, output,
                                                            layerOf(place.level), nameOf(place)));
  auto* proxy = layer.surface.get();
  static const zwlr_layer_surface_v1_listener listener{
      [](void* data, zwlr_layer_surface_v1* sender, std::uint32_t serial, std::uint32_t,
         std::uint32_t) {
        zwlr_layer_surface_v1_ack_configure(sender, serial);
        static_cast<Layer*>(data)->isConfigured = true;
      },
      [](void* data, zwlr_layer_surface_v1*) {
        auto& gone = *static_cast<Layer*>(data);
        gone.isClosed = true;
        gone.closed();
      }};
  zwlr_layer_surface_v1_add_listener(proxy, &listener, &layer);
  setPlace(proxy, place.frame, *screen);
  zwlr_layer_surface_v1_set_anchor(proxy, ZWLR_LAYER_SURFACE_V1_ANCHOR_TOP |
                                              ZWLR_LAYER_SURFACE_V1_ANCHOR_LEFT);
  zwlr_layer_surface_v1_set_exclusive_zone(proxy, wholeOutput);
  setKeys(proxy, place);
  wl_surface_commit(surface);
  for (int i = 0; i < mostRoundTrips && !layer.isConfigured; ++i)
    if (wl_display_roundtrip(display_) < 0)
      break;
}

void QtLayerShell::closed(QWindow& window) {
  // Later: the object that tells is about to go, and the window may have got another place.
  QTimer::singleShot(0, &window, [this, &window] {
    if (const auto layer = layers_.find(&window); layer != layers_.end() && layer->second->isClosed)
      window.close();
  });
}

/// As the toolkit places it beside its parent, which it takes to stand at the desktop's corner;
/// whole within the screen.
QRect QtLayerShell::frameOfPopup(const QWindow& popup) const {
  QRect frame = popup.geometry();
  auto* parent = popup.transientParent();
  if (const auto known = layers_.find(parent); known != layers_.end())
    frame.translate(known->second->frame.topLeft() - parent->geometry().topLeft());
  const QScreen* screen = screenOf(frame);
  if (screen == nullptr)
    return frame;
  const QRect room = screen->geometry();
  frame.moveLeft(std::max(std::min(frame.left(), room.right() + 1 - frame.width()), room.left()));
  frame.moveTop(std::max(std::min(frame.top(), room.bottom() + 1 - frame.height()), room.top()));
  return frame;
}

/// On a connection of its own: the toolkit does not bear to hear of outputs that others have let
/// go.
double QtLayerShell::scale(const QScreen& screen) {
  double& scale = scales_.try_emplace(screen.name(), screen.devicePixelRatio()).first->second;
  WaylandConnection connection;
  if (!connection.isOpen())
    return scale;
  const Outputs outputs(connection.registry());
  connection.roundTrip();
  if (const auto* output = outputs.find(screen.name().toStdString()))
    scale = output->scale(screen.geometry().size());
  return scale;
}

/// As large as compositors make it, who round each edge to a whole pixel by itself.
bool QtLayerShell::draw(QWindow& window, const std::function<void(QImage&)>& paint) {
  const auto known = layers_.find(&window);
  const QScreen* screen = known == layers_.end() ? nullptr : screenOf(known->second->frame);
  auto* surface = toolkit::surface(window);
  if (screen == nullptr || surface == nullptr)
    return false;
  Layer& layer = *known->second;
  const auto found = scales_.find(screen->name());
  const double each = found == scales_.end() ? scale(*screen) : found->second;
  if (each == window.devicePixelRatio() || !PixelSurface::isPossible(*registry_)) {
    layer.pixels.reset();
    return false;
  }
  const QRect frame = layer.frame.translated(-screen->geometry().topLeft());
  const auto pixel = [each](int point) { return static_cast<int>(std::lround(point * each)); };
  QImage picture(pixel(frame.left() + frame.width()) - pixel(frame.left()),
                 pixel(frame.top() + frame.height()) - pixel(frame.top()),
                 QImage::Format_ARGB32_Premultiplied);
  picture.setDevicePixelRatio(each);
  picture.fill(Qt::transparent);
  paint(picture);
  if (!layer.pixels)
    layer.pixels = std::make_unique<PixelSurface>(*registry_, surface);
  layer.pixels->show(picture, frame.size());
  return true;
}

void QtLayerShell::withdraw(QWindow& window) {
  layers_.erase(&window);
}

bool QtLayerShell::eventFilter(QObject* watched, QEvent* event) {
  const auto type = event->type();
  if (type != QEvent::Show && type != QEvent::Hide && type != QEvent::PlatformSurface)
    return false;
  auto* window = qobject_cast<QWindow*>(watched);
  if (window == nullptr)
    return false;
  if (type == QEvent::PlatformSurface) {
    const auto* change = static_cast<QPlatformSurfaceEvent*>(event);
    if (change->surfaceEventType() == QPlatformSurfaceEvent::SurfaceAboutToBeDestroyed)
      withdraw(*window);
    return false;
  }
  const bool isPopup = (window->type() == Qt::Popup || window->type() == Qt::ToolTip) &&
                       !toolkit::isDragPicture(*window);
  // Those of ordinary windows, whose places nobody knows, are the toolkit's to place.
  auto* parent = window->transientParent();
  if (!isPopup || (parent != nullptr && !layers_.contains(parent)))
    return false;
  if (type == QEvent::Show) {
    give(*window, {frameOfPopup(*window), Level::overlay, false});
  } else {
    withdraw(*window);
    // A window that was hidden has lost its surface, and finds one again only by a new beginning.
    QTimer::singleShot(0, window, [window] {
      if (!window->isVisible())
        window->destroy();
    });
  }
  return false;
}

void QtLayerShell::keepRoom(const QScreen& screen, Qt::Edge edge, int depth) {
  if (!room_)
    room_ = std::make_unique<RoomKeeper>();
  room_->keep({screen.name().toStdString(), edge, depth});
}

void QtLayerShell::watchPresses(const std::vector<QRect>& spared, std::function<void()> pressed) {
  presses_.reset();
  panels_.reset();
  if (!pressed)
    return;
  // A press on another slot's tile opens its panel. That says so, for the first to have the
  // keyboard to itself would keep it.
  const auto file = sessionFile("panel");
  std::ofstream(file) << ::getpid();
  panels_ =
      std::make_unique<QFileSystemWatcher>(QStringList{QString::fromStdString(file.string())});
  connect(
      panels_.get(), &QFileSystemWatcher::fileChanged, panels_.get(),
      [pressed] {
        const auto leave = pressed;
        leave();
      },
      Qt::QueuedConnection);
  std::map<std::string, std::vector<QRect>> parts;
  for (const QRect& part : spared)
    if (const QScreen* screen = screenOf(part))
      parts[screen->name().toStdString()].push_back(part.translated(-screen->geometry().topLeft()));
  presses_ = std::make_unique<PressSurface>(parts, std::move(pressed));
}

} // namespace tavrin

/// Null where the toolkit is on no compositor, or on one without a layer shell.
extern "C" __attribute__((visibility("default"))) tavrin::LayerShell* tavrinMakeLayerShell() {
  auto* display = tavrin::toolkit::display();
  if (display == nullptr)
    return nullptr;
  auto shell = std::make_unique<tavrin::QtLayerShell>(display);
  return shell->isThere() ? shell.release() : nullptr;
}
