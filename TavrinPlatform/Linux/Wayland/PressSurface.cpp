#include "TavrinPlatform/Linux/Wayland/PressSurface.h"

#include "TavrinPlatform/Linux/Wayland/PointerListener.h"
#include "TavrinPlatform/Linux/Wayland/ToolkitSurfaces.h"

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
  listenToDrags();
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
  static const wl_pointer_listener listener = [] {
    auto events = idlePointerListener();
    events.button = [](void* self, wl_pointer*, std::uint32_t, std::uint32_t, std::uint32_t,
                       std::uint32_t state) {
      if (state == WL_POINTER_BUTTON_STATE_PRESSED)
        static_cast<PressSurface*>(self)->isPressed_ = true;
    };
    return events;
  }();
  wl_pointer_add_listener(pointer_.get(), &listener, this);
}

/// A drag that comes over a clear surface is told to it, and to nobody under it.
void PressSurface::listenToDrags() {
  const ProxyPtr<wl_data_device_manager> manager(
      connection_.registry().bind<wl_data_device_manager>(wl_data_device_manager_interface, 1));
  if (!manager || !seat_)
    return;
  drags_.reset(wl_data_device_manager_get_data_device(manager.get(), seat_.get()));
  static const wl_data_device_listener listener{
      [](void* self, wl_data_device*, wl_data_offer* offer) {
        static_cast<PressSurface*>(self)->offer_.reset(offer);
      },
      [](void* self, wl_data_device*, std::uint32_t, wl_surface*, wl_fixed_t, wl_fixed_t,
         wl_data_offer*) { static_cast<PressSurface*>(self)->isDragged_ = true; },
      [](void* self, wl_data_device*) { static_cast<PressSurface*>(self)->offer_.reset(); },
      [](void*, wl_data_device*, std::uint32_t, wl_fixed_t, wl_fixed_t) {},
      [](void*, wl_data_device*) {},
      [](void*, wl_data_device*, wl_data_offer*) {}};
  wl_data_device_add_listener(drags_.get(), &listener, this);
}

void PressSurface::letDragThrough() {
  QObject* drag = toolkit::drag();
  if (drag == nullptr)
    return;
  const auto setOpen = [this](bool isOpen) {
    for (const auto& surface : surfaces_)
      surface->setOpen(isOpen);
    connection_.flush();
  };
  setOpen(true);
  QObject::connect(drag, &QObject::destroyed, notifier_.get(), [setOpen] { setOpen(false); });
}

void PressSurface::read() {
  std::vector<pollfd> nobody;
  connection_.wait(nobody, 0);
  connection_.flush();
  if (!connection_.isOpen()) {
    notifier_->setEnabled(false);
    return;
  }
  if (std::exchange(isDragged_, false))
    letDragThrough();
  // Later: who is told may end this.
  if (std::exchange(isPressed_, false))
    QTimer::singleShot(0, notifier_.get(), [this] {
      const auto pressed = pressed_;
      pressed();
    });
}

} // namespace tavrin
