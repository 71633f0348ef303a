#include "TavrinWidgetsUI/Kit/Pictures/Thumbnail.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr int side = 64;
  const QImage picture = tavrin::thumbnail({reinterpret_cast<const char*>(data), size}, side);
  if (picture.width() > side || picture.height() > side)
    std::abort();
  return 0;
}
