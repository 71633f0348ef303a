#include "TavrinPlatform/macOS/Tile/MacPicture.h"

#include <QApplication>
#include <QImage>
#include <gtest/gtest.h>

namespace tavrin {
/// The toolkit's own turning of pictures is there on a Mac alone.
CGImageRef makePicture(const QImage& image) {
  return image.isNull() ? nullptr : reinterpret_cast<CGImageRef>(8);
}
} // namespace tavrin

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  const QApplication toolkit(argc, argv);
  return RUN_ALL_TESTS();
}
