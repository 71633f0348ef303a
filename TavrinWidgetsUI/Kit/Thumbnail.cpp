#include "TavrinWidgetsUI/Kit/Thumbnail.h"

#include "TavrinStorage/FileBeginning.h"

#include <QBuffer>
#include <QImageReader>
#include <algorithm>
#include <array>

namespace tavrin {

namespace {

constexpr qint64 mostMegabytes = 256;
constexpr std::size_t longestFile = 64 * 1024 * 1024;
constexpr int longestSide = 32'767;
/// None that runs a program or loads further files.
constexpr auto formats =
    std::to_array<std::string_view>({"png", "jpeg", "gif", "bmp", "webp", "tiff", "ppm", "ico"});

} // namespace

QImage thumbnail(std::string_view bytes, int side) {
  QByteArray data = QByteArray::fromRawData(bytes.data(), static_cast<qsizetype>(bytes.size()));
  QBuffer buffer(&data);
  QImageReader reader(&buffer);
  reader.setDecideFormatFromContent(true);
  const std::string format = reader.format().toStdString();
  if (std::ranges::find(formats, format) == formats.end())
    return {};
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
