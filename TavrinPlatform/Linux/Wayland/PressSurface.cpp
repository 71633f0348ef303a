#include "TavrinPlatform/Linux/Wayland/PressSurface.h"

#include <QTimer>

namespace tavrin {

PressSurface::PressSurface(const std::map<std::string, std::vector<QRect>>& spared,
                           std::function<void()> pressed)
    : pressed_(std::move(pressed)) {
  if (!connection_.isOpen())
    return;
  outputs_ = std::make_unique<Outputs>(connection_.registry());
  connection_.roundTrip();
  constexpr std::uint32_t allEdges =
      ZWLR_LAYER_SURFACE_V1_ANCHOR_TOP | ZWLR_LAYER_SURFACE_V1_ANCHOR_BOTTOM |
      ZWLR_LAYER_SURFACE_V1_ANCHOR_LEFT | ZWLR_LAYER_SURFACE_V1_ANCHOR_RIGHT;
  for (const auto& each : outputs_->all()) {
    const auto found = spared.find(each->name);
    const auto left = found == spared.end() ? std::vector<QRect>() : found->second;
    surfaces_.push_back(std::make_unique<ClearSurface>(
        connection_, each->proxy.get(),
        ClearSurface::Shape{ZWLR_LAYER_SHELL_V1_LAYER_TOP, allEdges, 0, 0, -1, true, left}));
  }
  listen();
  notifier_ = std::make_unique<QSocketNotifier>(connection_.descriptor(), QSocketNotifier::Read);
  QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                   [this] { read(); });
  connection_.roundTrip();
}

PressSurface::~PressSurface() = default;

void PressSurface::listen() {
  seat_.reset(connection_.registry().bind<wl_seat>(wl_seat_interface, 1));
  if (!seat_)
    return;
  pointer_.reset(wl_seat_get_pointer(seat_.get()));
  static const wl_pointer_listener listener{
      [](void*, wl_pointer*, std::uint32_t, wl_surface*, wl_fixed_t, wl_fixed_t) {},
      [](void*, wl_pointer*, std::uint32_t, wl_surface*) {},
      [](void*, wl_pointer*, std::uint32_t, wl_fixed_t, wl_fixed_t) {},
      [](void* self, wl_pointer*, std::uint32_t, std::uint32_t, std::uint32_t,
         std::uint32_t state) {
        if (state == WL_POINTER_BUTTON_STATE_PRESSED)
          static_cast<PressSurface*>(self)->isPressed_ = true;
      },
      [](void*, wl_pointer*, std::uint32_t, std::uint32_t, wl_fixed_t) {},
      [](void*, wl_pointer*) {},
      [](void*, wl_pointer*, std::uint32_t) {},
      [](void*, wl_pointer*, std::uint32_t, std::uint32_t) {},
      [](void*, wl_pointer*, std::uint32_t, std::int32_t) {},
      [](void*, wl_pointer*, std::uint32_t, std::int32_t) {}};
  wl_pointer_add_listener(pointer_.get(), &listener, this);
}

void PressSurface::read() {
  std::vector<pollfd> nobody;
  connection_.wait(nobody, 0);
  connection_.flush();
  if (!connection_.isOpen()) {
    notifier_->setEnabled(false);
    return;
  }
  // Later: who is told may end this.
  if (std::exchange(isPressed_, false))
    QTimer::singleShot(0, notifier_.get(), [this] {
      const auto pressed = pressed_;
      pressed();
    });
}

} // namespace tavrin
