#include "TavrinWidgetsUI/Bookmarks/Favicon.h"

#include "TavrinCore/Text/PictureFormat.h"

#include <QBuffer>
#include <QImageReader>
#include <QPainter>
#include <algorithm>

namespace tavrin {
namespace {

/// No icon is larger, and nothing beyond is decoded.
constexpr int largestSide = 1024;
constexpr int mostPictures = 32;

bool isSane(const QSize& size) {
  return size.isValid() && !size.isEmpty() && size.width() <= largestSide &&
         size.height() <= largestSide;
}

/// Which of an icon file's pictures to take.
int bestPicture(QImageReader& reader, int side) {
  int best = 0;
  int bestWidth = 0;
  const int count = std::clamp(reader.imageCount(), 1, mostPictures);
  for (int i = 0; i < count; ++i) {
    if (i > 0 && !reader.jumpToImage(i))
      break;
    const int width = reader.size().width();
    const bool isBetter = bestWidth < side ? width > bestWidth : width >= side && width < bestWidth;
    if (isBetter) {
      best = i;
      bestWidth = width;
    }
  }
  return best;
}

} // namespace

QImage faviconFrom(std::string_view bytes, int side) {
  QByteArray data = QByteArray::fromRawData(bytes.data(), static_cast<qsizetype>(bytes.size()));
  QBuffer buffer(&data);
  const std::string_view format = pictureFormat(bytes);
  if (format != "ico" && format != "png" && format != "jpeg" && format != "gif")
    return {};
  QImageReader reader(&buffer, QByteArray(format.data(), static_cast<qsizetype>(format.size())));
  reader.setAutoDetectImageFormat(false);
  reader.setAllocationLimit(16);
  if (format == "ico") {
    const int best = bestPicture(reader, side);
    if (!reader.jumpToImage(best) && best != 0)
      return {};
  }
  if (!isSane(reader.size()))
    return {};
  const QImage read = reader.read();
  if (read.isNull() || !isSane(read.size()))
    return {};
  const QImage small = read.convertToFormat(QImage::Format_ARGB32_Premultiplied)
                           .scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
  QImage square(side, side, QImage::Format_ARGB32_Premultiplied);
  square.fill(Qt::transparent);
  QPainter painter(&square);
  painter.drawImage((side - small.width()) / 2, (side - small.height()) / 2, small);
  return square;
}

} // namespace tavrin
