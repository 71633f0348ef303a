#include "TavrinWidgetsUI/Kit/Pictures/Thumbnail.h"

#include "TavrinCore/Text/PictureFormat.h"
#include "TavrinPlatform/Files/FileBeginning.h"

#include <QBuffer>
#include <QImageReader>
#include <algorithm>

namespace tavrin {

namespace {

constexpr qint64 mostMegabytes = 256;
constexpr std::size_t longestFile = 64 * 1024 * 1024;
constexpr int longestSide = 32'767;

} // namespace

QImage thumbnail(std::string_view bytes, int side) {
  QByteArray data = QByteArray::fromRawData(bytes.data(), static_cast<qsizetype>(bytes.size()));
  QBuffer buffer(&data);
  const std::string_view format = pictureFormat(bytes);
  if (format.empty() || format == "xpm")
    return {};
  QImageReader reader(&buffer, QByteArray(format.data(), static_cast<qsizetype>(format.size())));
  reader.setAutoDetectImageFormat(false);
  const QSize size = reader.size();
  if (size.isEmpty() || std::max(size.width(), size.height()) > longestSide ||
      qint64{size.width()} * size.height() * 4 > mostMegabytes * 1024 * 1024)
    return {};
  if (size.width() > side || size.height() > side)
    reader.setScaledSize(size.scaled(side, side, Qt::KeepAspectRatio).expandedTo({1, 1}));
  reader.setAutoTransform(true);
  const QImage picture = reader.read();
  // A header may lie.
  return picture.width() > side || picture.height() > side
             ? picture.scaled(side, side, Qt::KeepAspectRatio)
             : picture;
}

std::optional<Data> packedThumbnail(std::string_view bytes, int side) {
  const QImage image = thumbnail(bytes, side);
  QByteArray file;
  QBuffer buffer(&file);
  constexpr int quality = 85;
  const bool isWritten =
      !image.isNull() &&
      (image.hasAlphaChannel() ? image.save(&buffer, "PNG") : image.save(&buffer, "JPEG", quality));
  if (!isWritten)
    return std::nullopt;
  return Data::fromText({file.constData(), static_cast<std::size_t>(file.size())});
}

QImage fileThumbnail(const std::filesystem::path& file, int side) {
  const auto bytes = readBeginning(file, longestFile + 1);
  return bytes && bytes->size() <= longestFile ? thumbnail(*bytes, side) : QImage();
}

} // namespace tavrin
