#include "TavrinPlatform/Linux/Tile/WatchedSurface.h"

#include "TavrinPlatform/Files/Descriptor.h"
#include "TavrinPlatform/Linux/Base/TileProtocol.h"

#include <algorithm>
#include <sys/mman.h>
#include <unistd.h>

namespace tavrin {

namespace {

/// Far more than a session has windows that show tiles.
constexpr std::size_t mostWatchers = 8;
constexpr std::chrono::seconds watcherPatience{1};

/// In memory that is gone with whoever reads it.
Descriptor pixelFile(const QImage& image) {
  Descriptor file(::memfd_create("tile", MFD_CLOEXEC));
  const auto length = static_cast<std::size_t>(image.sizeInBytes());
  if (!file || ::write(file.number(), image.constBits(), length) != static_cast<ssize_t>(length))
    return {};
  return file;
}

} // namespace

const sd_bus_vtable WatchedSurface::vtable[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("Picture", "ti", "tsiih", &WatchedSurface::picture, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_VTABLE_END};

WatchedSurface::WatchedSurface(Bus& bus, const std::string& identifier) : bus_(bus) {
  patience_.setSingleShot(true);
  patience_.setInterval(watcherPatience);
  QObject::connect(&patience_, &QTimer::timeout, [this] { setWatched(!waiting_.empty()); });
  service_ = bus_.serve(objectPath(identifier).c_str(), tileInterface, vtable, this);
}

void WatchedSurface::display(const QImage&) {
  ++serial_;
  subject_ = next_;
  for (const auto& [unused, request] : std::exchange(waiting_, {}))
    answer(request);
}

int WatchedSurface::picture(sd_bus_message* message, void* context, sd_bus_error* error) {
  auto* self = static_cast<WatchedSurface*>(context);
  std::uint64_t seen = 0;
  int pixelsHigh = 0;
  const char* caller = sd_bus_message_get_sender(message);
  if (sd_bus_message_read(message, "ti", &seen, &pixelsHigh) <= 0 || pixelsHigh < 1 ||
      pixelsHigh > highestTilePicture || caller == nullptr)
    return sd_bus_error_set(error, SD_BUS_ERROR_INVALID_ARGS, "A tile has no such height.");
  if (self->waiting_.size() == mostWatchers && !self->waiting_.contains(caller))
    return sd_bus_error_set(error, SD_BUS_ERROR_LIMITS_EXCEEDED, "The tile is watched enough.");
  auto& request = self->waiting_[caller];
  if (request.message)
    sd_bus_reply_method_errorf(request.message.get(), SD_BUS_ERROR_NO_REPLY, "Asked anew.");
  request = {BusMessage(sd_bus_message_ref(message)), pixelsHigh};
  self->patience_.stop();
  // A tile that nobody saw may have something new to show.
  self->setWatched(true);
  if (const auto found = self->waiting_.find(caller);
      found != self->waiting_.end() && self->serial_ > seen)
    self->answer(self->waiting_.extract(found).mapped());
  return 1;
}

void WatchedSurface::answer(const Request& request) {
  patience_.start();
  const QImage image = events.picture ? events.picture(request.pixelsHigh) : QImage();
  sd_bus_message* made = nullptr;
  sd_bus_message_new_method_return(request.message.get(), &made);
  BusMessage reply(made);
  const Descriptor pixels = image.isNull() ? Descriptor() : pixelFile(image);
  if (!pixels) {
    sd_bus_reply_method_errorf(request.message.get(), SD_BUS_ERROR_FAILED, "There is no picture.");
    return bus_.send({});
  }
  bus_.send(reply.append("tsiih", serial_, subject_.c_str(), image.width(), image.height(),
                         pixels.number()));
}

void WatchedSurface::setWatched(bool isWatched) {
  if (std::exchange(isWatched_, isWatched) != isWatched && events.visibilityChanged)
    events.visibilityChanged();
}

} // namespace tavrin
