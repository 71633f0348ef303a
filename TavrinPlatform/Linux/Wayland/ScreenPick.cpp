#include "TavrinPlatform/Linux/Wayland/ScreenPick.h"

#include "TavrinPlatform/Linux/Input/ColourLens.h"
#include "TavrinPlatform/Linux/Wayland/PointerListener.h"
#include "TavrinPlatform/Linux/Wayland/SharedBuffer.h"

#include <QPainter>
#include <QTimer>
#include <algorithm>
#include <cmath>
#include <linux/input-event-codes.h>
#include <unistd.h>

namespace tavrin {

namespace {

using Outcome = ColourSample::Outcome;

/// Milliseconds until the compositor has painted what was under the panel.
constexpr int uncoveringTime = 100;
/// Places come in 256ths of a point, and less than they are.
constexpr double placeError = 1.0 / 64;
/// To each side of the cross's middle, in points.
constexpr int crossReach = 10;
constexpr std::uint32_t allEdges =
    ZWLR_LAYER_SURFACE_V1_ANCHOR_TOP | ZWLR_LAYER_SURFACE_V1_ANCHOR_BOTTOM |
    ZWLR_LAYER_SURFACE_V1_ANCHOR_LEFT | ZWLR_LAYER_SURFACE_V1_ANCHOR_RIGHT;

void paintCross(QPainter& painter, QPoint middle) {
  for (const auto& [colour, width] : {std::pair{Qt::white, 3}, std::pair{Qt::black, 1}}) {
    painter.setPen(QPen(colour, width));
    painter.drawLine(middle - QPoint(crossReach, 0), middle + QPoint(crossReach, 0));
    painter.drawLine(middle - QPoint(0, crossReach), middle + QPoint(0, crossReach));
  }
}

} // namespace

bool ScreenPick::isPossible() {
  const WaylandConnection connection;
  return connection.isOpen() &&
         connection.registry().has(zwlr_screencopy_manager_v1_interface.name) &&
         connection.registry().has(zwlr_layer_shell_v1_interface.name) &&
         PixelSurface::isPossible(connection.registry());
}

ScreenPick::ScreenPick(std::function<void(const ColourSample&)> done) : done_(std::move(done)) {
  QTimer::singleShot(uncoveringTime, &context_, [this] { begin(); });
}

ScreenPick::~ScreenPick() = default;

void ScreenPick::begin() {
  if (connection_.isOpen()) {
    outputs_ = std::make_unique<Outputs>(connection_.registry());
    connection_.roundTrip();
    for (const auto& output : outputs_->all())
      if (QImage picture = copyOfOutput(connection_, *output); !picture.isNull()) {
        ClearSurface::Shape shape{ZWLR_LAYER_SHELL_V1_LAYER_OVERLAY, allEdges, 0, 0, -1, true, {}};
        shape.takesKeys = true;
        views_.push_back(std::make_unique<View>());
        views_.back()->picture = std::move(picture);
        views_.back()->surface =
            std::make_unique<ClearSurface>(connection_, output->proxy.get(), shape);
      }
  }
  if (views_.empty())
    return finish({Outcome::unavailable, 0, 0, 0});
  const auto& registry = connection_.registry();
  compositor_.reset(registry.bind<wl_compositor>(wl_compositor_interface, 4));
  memory_.reset(registry.bind<wl_shm>(wl_shm_interface, 1));
  lens_.reset(wl_compositor_create_surface(compositor_.get()));
  seat_.reset(registry.bind<wl_seat>(wl_seat_interface, 1));
  if (seat_) {
    listenToPointer();
    listenToKeys();
  }
  notifier_ = std::make_unique<QSocketNotifier>(connection_.descriptor(), QSocketNotifier::Read);
  QObject::connect(notifier_.get(), &QSocketNotifier::activated, &context_, [this] { read(); });
  connection_.roundTrip();
  QTimer::singleShot(0, &context_, [this] { read(); });
}

void ScreenPick::listenToPointer() {
  pointer_.reset(wl_seat_get_pointer(seat_.get()));
  static const wl_pointer_listener listener = [] {
    auto events = idlePointerListener();
    events.enter = [](void* data, wl_pointer*, std::uint32_t number, wl_surface* surface,
                      wl_fixed_t x, wl_fixed_t y) {
      auto& self = *static_cast<ScreenPick*>(data);
      const auto found = std::ranges::find(
          self.views_, surface, [](const auto& view) { return view->surface->surface(); });
      self.view_ = found == self.views_.end() ? nullptr : found->get();
      self.coming_ = number;
      self.moved({wl_fixed_to_double(x), wl_fixed_to_double(y)});
    };
    events.leave = [](void* data, wl_pointer*, std::uint32_t, wl_surface*) {
      static_cast<ScreenPick*>(data)->view_ = nullptr;
    };
    events.motion = [](void* data, wl_pointer*, std::uint32_t, wl_fixed_t x, wl_fixed_t y) {
      static_cast<ScreenPick*>(data)->moved({wl_fixed_to_double(x), wl_fixed_to_double(y)});
    };
    events.button = [](void* data, wl_pointer*, std::uint32_t, std::uint32_t, std::uint32_t button,
                       std::uint32_t state) {
      if (state == WL_POINTER_BUTTON_STATE_PRESSED)
        static_cast<ScreenPick*>(data)->pressed(button);
    };
    return events;
  }();
  wl_pointer_add_listener(pointer_.get(), &listener, this);
}

/// Three keys, whose numbers are those of the kernel whatever is engraved on the others.
void ScreenPick::listenToKeys() {
  keyboard_.reset(wl_seat_get_keyboard(seat_.get()));
  static const wl_keyboard_listener listener{
      [](void*, wl_keyboard*, std::uint32_t, std::int32_t map, std::uint32_t) { ::close(map); },
      [](void*, wl_keyboard*, std::uint32_t, wl_surface*, wl_array*) {},
      [](void*, wl_keyboard*, std::uint32_t, wl_surface*) {},
      [](void* data, wl_keyboard*, std::uint32_t, std::uint32_t, std::uint32_t key,
         std::uint32_t state) {
        if (state == WL_KEYBOARD_KEY_STATE_PRESSED)
          static_cast<ScreenPick*>(data)->typed(key);
      },
      [](void*, wl_keyboard*, std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t,
         std::uint32_t) {},
      [](void*, wl_keyboard*, std::int32_t, std::int32_t) {}};
  wl_keyboard_add_listener(keyboard_.get(), &listener, this);
}

void ScreenPick::moved(QPointF place) {
  place_ = place;
  hasMoved_ = true;
}

void ScreenPick::pressed(std::uint32_t button) {
  if (button == BTN_LEFT)
    take();
  else
    finish({});
}

void ScreenPick::typed(std::uint32_t key) {
  if (key == KEY_ESC)
    finish({});
  else if (key == KEY_ENTER || key == KEY_KPENTER)
    take();
}

void ScreenPick::read() {
  if (!done_)
    return;
  std::vector<pollfd> nobody;
  connection_.wait(nobody, 0);
  if (!connection_.isOpen())
    return finish({Outcome::unavailable, 0, 0, 0});
  showCopies();
  // Once for all moves that have come together.
  if (std::exchange(hasMoved_, false))
    showLens();
  connection_.flush();
}

void ScreenPick::showCopies() {
  for (const auto& view : views_) {
    const QSize points = view->surface->size();
    if (!view->surface->isShown() || view->shown == points)
      continue;
    view->shown = points;
    if (!view->pixels)
      view->pixels =
          std::make_unique<PixelSurface>(connection_.registry(), view->surface->surface());
    view->pixels->show(view->picture, points);
    wl_surface_commit(view->surface->surface());
  }
}

/// The pixel under the pointer.
QPoint ScreenPick::pixel() const {
  const QSize points = view_->surface->size();
  const auto along = [](double place, int points, int pixels) {
    return std::clamp(
        static_cast<int>(std::floor((place + placeError) * pixels / std::max(points, 1))), 0,
        pixels - 1);
  };
  return {along(place_.x(), points.width(), view_->picture.width()),
          along(place_.y(), points.height(), view_->picture.height())};
}

void ScreenPick::showLens() {
  if (view_ == nullptr)
    return;
  const QRect cross(-crossReach - 1, -crossReach - 1, 2 * crossReach + 3, 2 * crossReach + 3);
  const QPoint at = place_.toPoint();
  const QRect lens(ColourLens::beside(at, QRect(QPoint(), view_->surface->size())) - at,
                   ColourLens::size);
  const QRect whole = cross | lens;
  QImage picture(whole.size(), QImage::Format_ARGB32_Premultiplied);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  painter.translate(-whole.topLeft());
  paintCross(painter, {});
  painter.translate(lens.topLeft());
  ColourLens::paint(painter, ColourLens::around(view_->picture, pixel()));
  painter.end();
  // The compositor may still read the one before.
  std::swap(lensBuffers_[0], lensBuffers_[1]);
  lensBuffers_[0] = sharedBuffer(memory_.get(), picture);
  if (!lensBuffers_[0])
    return;
  wl_surface_attach(lens_.get(), lensBuffers_[0].get(), 0, 0);
  wl_surface_damage_buffer(lens_.get(), 0, 0, picture.width(), picture.height());
  wl_surface_commit(lens_.get());
  wl_pointer_set_cursor(pointer_.get(), coming_, lens_.get(), -whole.left(), -whole.top());
}

void ScreenPick::take() {
  if (view_ == nullptr)
    return;
  const QColor colour = view_->picture.pixelColor(pixel());
  finish({Outcome::picked, colour.red(), colour.green(), colour.blue()});
}

void ScreenPick::finish(const ColourSample& sample) {
  // The callee drops this object, and with it what is just calling.
  if (auto done = std::exchange(done_, nullptr))
    QTimer::singleShot(0, &context_, [this, done = std::move(done), sample] {
      notifier_.reset();
      views_.clear();
      connection_.flush();
      done(sample);
    });
}

} // namespace tavrin

/// Null where the compositor shows its outputs to no program.
extern "C" __attribute__((visibility("default"))) tavrin::Token*
tavrinPickColour(std::function<void(const tavrin::ColourSample&)> done) {
  return tavrin::ScreenPick::isPossible() ? new tavrin::ScreenPick(std::move(done)) : nullptr;
}
