#include "TavrinPlatform/macOS/Applications/IconImage.h"

namespace tavrin {

QImage makeImage(NSImage* image, int pixels) {
  NSRect place = NSMakeRect(0, 0, pixels, pixels);
  CGImageRef picture = [image CGImageForProposedRect:&place context:nil hints:nil];
  if (picture == nullptr || pixels <= 0)
    return {};
  QImage drawn(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
  drawn.fill(0);
  CGColorSpaceRef space = CGColorSpaceCreateWithName(kCGColorSpaceSRGB);
  const auto size = static_cast<std::size_t>(pixels);
  // Blue, green, red, alpha in memory: the toolkit's format on a little-endian machine.
  CGContextRef context = CGBitmapContextCreate(
      drawn.bits(), size, size, 8, static_cast<std::size_t>(drawn.bytesPerLine()), space,
      static_cast<uint32_t>(kCGImageAlphaPremultipliedFirst) |
          static_cast<uint32_t>(kCGBitmapByteOrder32Little));
  CGColorSpaceRelease(space);
  if (context == nullptr)
    return {};
  CGContextDrawImage(context, place, picture);
  CGContextRelease(context);
  return drawn;
}

} // namespace tavrin
