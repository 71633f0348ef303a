#include "TavrinPlatform/Linux/Wayland/SharedBuffer.h"

#include "TavrinPlatform/Files/Descriptor.h"

#include <QImage>
#include <sys/mman.h>

namespace tavrin {

ProxyPtr<wl_buffer> sharedBuffer(wl_shm* memory, const QImage& picture) {
  const QImage pixels = picture.convertToFormat(QImage::Format_ARGB32_Premultiplied);
  const auto length = static_cast<std::size_t>(pixels.sizeInBytes());
  const Descriptor bytes(::memfd_create("tavrin", MFD_CLOEXEC));
  if (pixels.isNull() || !bytes ||
      ::write(bytes.number(), pixels.constBits(), length) != static_cast<ssize_t>(length))
    return nullptr;
  const ProxyPtr<wl_shm_pool> pool(
      wl_shm_create_pool(memory, bytes.number(), static_cast<std::int32_t>(length)));
  return ProxyPtr<wl_buffer>(wl_shm_pool_create_buffer(
      pool.get(), 0, pixels.width(), pixels.height(),
      static_cast<std::int32_t>(pixels.bytesPerLine()), WL_SHM_FORMAT_ARGB8888));
}

} // namespace tavrin
