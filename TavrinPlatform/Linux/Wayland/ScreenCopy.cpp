#include "TavrinPlatform/Linux/Wayland/ScreenCopy.h"

#include "TavrinPlatform/Files/Descriptor.h"

#include <QTransform>
#include <chrono>
#include <optional>
#include <sys/mman.h>
#include <unistd.h>

namespace tavrin {

namespace {

constexpr std::chrono::milliseconds frameLimit{1000};
constexpr std::uint32_t mostPixels = 1 << 15;
/// By their four letters, as the kernel counts formats of pixels.
constexpr std::uint32_t formatXB24 = 0x34324258;
constexpr std::uint32_t formatAB24 = 0x34324241;

/// What the compositor says of a copy under way.
struct Frame {
  std::uint32_t format = 0;
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  std::uint32_t stride = 0;
  bool isUpsideDown = false;
  bool isReady = false;
  bool hasFailed = false;

  std::size_t length() const { return std::size_t{stride} * height; }
  bool isUsable() const {
    return width > 0 && height > 0 && width <= mostPixels && height <= mostPixels &&
           stride >= width * 4 && stride <= mostPixels * 4;
  }
};

Frame& frameOf(void* data) {
  return *static_cast<Frame*>(data);
}

std::optional<QImage::Format> toolkitFormat(std::uint32_t format) {
  switch (format) {
  case WL_SHM_FORMAT_ARGB8888:
  case WL_SHM_FORMAT_XRGB8888:
    return QImage::Format_RGB32;
  case formatXB24:
  case formatAB24:
    return QImage::Format_RGBX8888;
  default:
    return std::nullopt;
  }
}

void listen(zwlr_screencopy_frame_v1* proxy, Frame& frame) {
  static const zwlr_screencopy_frame_v1_listener listener{
      [](void* data, zwlr_screencopy_frame_v1*, std::uint32_t format, std::uint32_t width,
         std::uint32_t height, std::uint32_t stride) {
        Frame& told = frameOf(data);
        told.format = format;
        told.width = width;
        told.height = height;
        told.stride = stride;
      },
      [](void* data, zwlr_screencopy_frame_v1*, std::uint32_t flags) {
        frameOf(data).isUpsideDown = (flags & ZWLR_SCREENCOPY_FRAME_V1_FLAGS_Y_INVERT) != 0;
      },
      [](void* data, zwlr_screencopy_frame_v1*, std::uint32_t, std::uint32_t, std::uint32_t) {
        frameOf(data).isReady = true;
      },
      [](void* data, zwlr_screencopy_frame_v1*) { frameOf(data).hasFailed = true; }};
  zwlr_screencopy_frame_v1_add_listener(proxy, &listener, &frame);
}

/// Outputs are turned against the clock, and mirrored before that.
QImage upright(const QImage& image, std::int32_t transform) {
  const bool isMirrored = transform >= WL_OUTPUT_TRANSFORM_FLIPPED;
  constexpr int quarter = 90;
  const QImage turned = image.transformed(QTransform().rotate(quarter * (transform & 3)));
  return isMirrored ? turned.mirrored(true, false) : turned;
}

} // namespace

QImage copyOfOutput(WaylandConnection& connection, const Outputs::Output& output) {
  const auto& registry = connection.registry();
  const ProxyPtr<zwlr_screencopy_manager_v1> manager(
      registry.bind<zwlr_screencopy_manager_v1>(zwlr_screencopy_manager_v1_interface, 1));
  const ProxyPtr<wl_shm> memory(registry.bind<wl_shm>(wl_shm_interface, 1));
  if (!manager || !memory)
    return {};
  Frame frame;
  const ProxyPtr<zwlr_screencopy_frame_v1> proxy(
      zwlr_screencopy_manager_v1_capture_output(manager.get(), 0, output.proxy.get()));
  listen(proxy.get(), frame);
  connection.roundTrip();
  const auto format = toolkitFormat(frame.format);
  if (!frame.isUsable() || !format || frame.hasFailed)
    return {};
  const Descriptor bytes(::memfd_create("tavrin", MFD_CLOEXEC));
  if (!bytes || ::ftruncate(bytes.number(), static_cast<off_t>(frame.length())) != 0)
    return {};
  const ProxyPtr<wl_shm_pool> pool(
      wl_shm_create_pool(memory.get(), bytes.number(), static_cast<std::int32_t>(frame.length())));
  const ProxyPtr<wl_buffer> buffer(
      wl_shm_pool_create_buffer(pool.get(), 0, static_cast<std::int32_t>(frame.width),
                                static_cast<std::int32_t>(frame.height),
                                static_cast<std::int32_t>(frame.stride), frame.format));
  zwlr_screencopy_frame_v1_copy(proxy.get(), buffer.get());
  const auto end = std::chrono::steady_clock::now() + frameLimit;
  std::vector<pollfd> nobody;
  while (!frame.isReady && !frame.hasFailed && connection.isOpen()) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
        end - std::chrono::steady_clock::now());
    if (left.count() <= 0)
      break;
    connection.wait(nobody, static_cast<int>(left.count()));
  }
  if (!frame.isReady)
    return {};
  void* pixels = ::mmap(nullptr, frame.length(), PROT_READ, MAP_SHARED, bytes.number(), 0);
  if (pixels == MAP_FAILED)
    return {};
  QImage image =
      QImage(static_cast<const uchar*>(pixels), static_cast<int>(frame.width),
             static_cast<int>(frame.height), static_cast<qsizetype>(frame.stride), *format)
          .copy()
          .convertToFormat(QImage::Format_RGB32);
  ::munmap(pixels, frame.length());
  if (frame.isUpsideDown)
    image = image.mirrored(false, true);
  return upright(image, output.transform);
}

} // namespace tavrin
