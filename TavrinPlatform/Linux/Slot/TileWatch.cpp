#include "TavrinPlatform/Linux/Slot/TileWatch.h"

#include "TavrinPlatform/Linux/Base/TileProtocol.h"

#include <sys/stat.h>
#include <unistd.h>

namespace tavrin {

namespace {

/// Seconds; a tile at rest has nothing to answer for days.
constexpr double noLimit = 1e9;

/// The pixels that a tile's process wrote, which is trusted with nothing.
QImage readPixels(int file, int width, int height) {
  const auto isSide = [](int pixels) { return pixels > 0 && pixels <= 16 * highestTilePicture; };
  struct stat facts {};
  if (!isSide(width) || !isSide(height) || height > highestTilePicture ||
      ::fstat(file, &facts) != 0 || !S_ISREG(facts.st_mode))
    return {};
  QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
  const auto length = static_cast<std::size_t>(image.sizeInBytes());
  if (image.isNull() || ::pread(file, image.bits(), length, 0) != static_cast<ssize_t>(length))
    return {};
  return image;
}

struct Watching final : std::enable_shared_from_this<Watching> {
  Watching(Bus& toBus, std::string name, int high, std::function<void(const TilePicture*)> handler)
      : bus(toBus), identifier(std::move(name)), path(objectPath(identifier)), pixelsHigh(high),
        shown(std::move(handler)) {}

  void begin() {
    owner = bus.match("type='signal',sender='org.freedesktop.DBus',member='NameOwnerChanged',"
                      "arg0='" +
                          identifier + "'",
                      [weak = weak_from_this()](sd_bus_message* signal) {
                        const char *name = nullptr, *before = nullptr, *now = nullptr;
                        // The handler may be what ends it.
                        const auto self = weak.lock();
                        if (self && sd_bus_message_read(signal, "sss", &name, &before, &now) > 0)
                          self->ownerChanged(*now != '\0');
                      });
    ask(0);
  }

  void ownerChanged(bool isThere) {
    if (isThere)
      ask(0);
    else
      shown(nullptr);
  }

  void ask(std::uint64_t seen) {
    BusMessage question =
        bus.method({identifier.c_str(), path.c_str(), tileInterface}, tilePictureMethod);
    question.append("ti", seen, pixelsHigh);
    if (question)
      sd_bus_message_set_auto_start(question.get(), 0);
    bus.call(
        question,
        [self = weak_from_this(), asked = ++questions](sd_bus_message* reply, const std::string&) {
          // What was asked after it is what counts.
          if (const auto living = self.lock(); living && living->questions == asked)
            living->answered(reply);
        },
        noLimit);
  }

  void answered(sd_bus_message* reply) {
    std::uint64_t serial = 0;
    const char* subject = nullptr;
    int width = 0;
    int height = 0;
    int file = -1;
    TilePicture picture;
    if (reply != nullptr &&
        sd_bus_message_read(reply, "tsiih", &serial, &subject, &width, &height, &file) > 0)
      picture = {subject, readPixels(file, width, height)};
    if (picture.image.isNull())
      return shown(nullptr);
    ask(serial);
    shown(&picture);
  }

  Bus& bus;
  std::string identifier;
  std::string path;
  int pixelsHigh;
  std::function<void(const TilePicture*)> shown;
  std::uint64_t questions = 0;
  TokenPtr owner;
};

class WatchToken final : public Token {
public:
  explicit WatchToken(std::shared_ptr<Watching> watching) : watching_(std::move(watching)) {}
  ~WatchToken() override { watching_->owner.reset(); }

private:
  std::shared_ptr<Watching> watching_;
};

} // namespace

TokenPtr watchTile(Bus& bus, const std::string& identifier, int pixelsHigh,
                   std::function<void(const TilePicture*)> shown) {
  auto watching = std::make_shared<Watching>(bus, identifier, pixelsHigh, std::move(shown));
  watching->begin();
  return std::make_unique<WatchToken>(std::move(watching));
}

} // namespace tavrin
