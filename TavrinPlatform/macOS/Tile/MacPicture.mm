#include "TavrinPlatform/macOS/Tile/MacPicture.h"

#include <QImage>

namespace tavrin {

CGImageRef makePicture(const QImage& image) {
  // The renderer paints into the same picture again, and the Dock may look later.
  return image.copy().toCGImage();
}

} // namespace tavrin
