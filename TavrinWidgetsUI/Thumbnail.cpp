#include "TavrinWidgetsUI/Thumbnail.h"

#include <QBuffer>
#include <QImageReader>
#include <algorithm>
#include <array>

namespace tavrin {
namespace {

constexpr qint64 mostBytes = qint64{256} * 1024 * 1024;

/// What strangers send is read as one of these or not at all: none runs or fetches anything.
bool isPixelFormat(const QByteArray& format) {
  constexpr std::array formats{"png", "jpeg", "jpg", "gif", "webp", "bmp", "ico", "tiff", "tif"};
  return std::ranges::any_of(formats, [&](const char* each) { return format == each; });
}

} // namespace

QImage thumbnail(const Data& data, int side) {
  QByteArray bytes =
      QByteArray::fromRawData(data.view().data(), static_cast<qsizetype>(data.bytes.size()));
  QBuffer buffer(&bytes);
  QImageReader reader(&buffer);
  if (!isPixelFormat(reader.format()))
    return {};
  const QSize size = reader.size();
  if (!size.isValid() || qint64{size.width()} * size.height() * 4 > mostBytes)
    return {};
  if (std::max(size.width(), size.height()) > side)
    reader.setScaledSize(size.scaled(side, side, Qt::KeepAspectRatio).expandedTo({1, 1}));
  reader.setAutoTransform(true);
  return reader.read();
}

std::optional<Data> thumbnailFile(const Data& data, int side) {
  const QImage image = thumbnail(data, side);
  QByteArray bytes;
  QBuffer buffer(&bytes);
  constexpr int quality = 85;
  const bool isWritten =
      !image.isNull() &&
      (image.hasAlphaChannel() ? image.save(&buffer, "PNG") : image.save(&buffer, "JPEG", quality));
  if (!isWritten)
    return std::nullopt;
  return Data::fromText({bytes.constData(), static_cast<std::size_t>(bytes.size())});
}

} // namespace tavrin
