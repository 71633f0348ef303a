#include "TavrinPlatform/macOS/Tile/MacPicture.h"

#include <QImage>

namespace tavrin {
/// The toolkit's own turning of pictures is there on a Mac alone.
CGImageRef makePicture(const QImage& image) {
  return image.isNull() ? nullptr : reinterpret_cast<CGImageRef>(8);
}
} // namespace tavrin
