#include "TavrinPlatform/Linux/Applications/IconLoader.h"

#include "TavrinCore/Base/Errors.h"
#include "TavrinCore/Text/PictureFormat.h"
#include "TavrinPlatform/Files/AtomicFile.h"
#include "TavrinPlatform/Linux/Applications/VectorDrawing.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QImageReader>
#include <QPainter>
#include <algorithm>
#include <fmt/format.h>

namespace tavrin {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t largestFile = 8 * 1024 * 1024;
constexpr qint64 mostPixels = 64 * 1024 * 1024;
constexpr std::size_t mostKept = 400;

QImage squared(const QImage& read, int pixels) {
  // Before it is scaled: the toolkit makes noise of pictures of one bit a pixel.
  const QImage image = read.convertToFormat(QImage::Format_ARGB32_Premultiplied);
  if (image.isNull() || image.size() == QSize(pixels, pixels))
    return image;
  QImage square(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
  square.fill(Qt::transparent);
  const QSize size =
      image.size().scaled(pixels, pixels, Qt::KeepAspectRatio).expandedTo(QSize(1, 1));
  QPainter painter(&square);
  painter.drawImage(QPoint((pixels - size.width()) / 2, (pixels - size.height()) / 2),
                    image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
  return square;
}

/// Leaves room for one more.
void prune(const fs::path& folder) {
  std::vector<std::pair<fs::file_time_type, fs::path>> kept;
  std::error_code error;
  for (fs::directory_iterator file(folder, error), end; !error && file != end;
       file.increment(error)) {
    std::error_code ignored;
    kept.emplace_back(file->last_write_time(ignored), file->path());
  }
  if (kept.size() < mostKept)
    return;
  std::ranges::sort(kept);
  kept.resize(kept.size() - mostKept / 2);
  for (const auto& [time, file] : kept)
    fs::remove(file, error);
}

} // namespace

QImage readSquare(const fs::path& file, int pixels) {
  std::optional<std::string> bytes;
  try {
    bytes = readFile(file, largestFile);
  } catch (const FileError&) {
    return {};
  }
  if (!bytes)
    return {};
  QByteArray data = QByteArray::fromRawData(bytes->data(), static_cast<qsizetype>(bytes->size()));
  QBuffer buffer(&data);
  const std::string_view format = pictureFormat(*bytes);
  if (format.empty())
    return {};
  QImageReader reader(&buffer, QByteArray(format.data(), static_cast<qsizetype>(format.size())));
  reader.setAutoDetectImageFormat(false);
  const QSize size = reader.size();
  if (!size.isValid() || qint64{size.width()} * size.height() > mostPixels)
    return {};
  return squared(reader.read(), pixels);
}

IconLoader::IconLoader(Places places, ModuleFolder modules)
    : places_(std::move(places)), modules_(std::move(modules)) {}

QImage IconLoader::load(const std::string& name, int points, int scale, const std::string& theme) {
  const IconSources sources{places_.icons,
                            [this](const std::string& each) { return readTheme(each); },
                            [](const fs::path& file) {
                              std::error_code ignored;
                              return fs::is_regular_file(file, ignored);
                            }};
  auto file = findIcon(name, points, scale, theme, sources);
  if (!file) {
    IconSources loose = sources;
    loose.folders = places_.loose;
    loose.theme = [](const std::string&) { return std::nullopt; };
    file = findIcon(name, points, scale, {}, loose);
  }
  if (!file)
    return {};
  const int pixels = points * scale;
  const auto ending = file->extension();
  return ending == ".svg" || ending == ".svgz" ? drawVector(*file, pixels)
                                               : readSquare(*file, pixels);
}

std::optional<IconTheme> IconLoader::readTheme(const std::string& name) {
  const auto known = themes_.find(name);
  if (known != themes_.end())
    return known->second;
  std::optional<IconTheme> theme;
  for (const auto& folder : places_.icons) {
    try {
      if (const auto text = readFile(folder / name / "index.theme", IconTheme::maximumSize)) {
        theme = IconTheme::parse(*text);
        break;
      }
    } catch (const FileError&) {
      // The next folder may have it whole.
    }
  }
  return themes_.emplace(name, std::move(theme)).first->second;
}

QImage IconLoader::drawVector(const fs::path& file, int pixels) {
  const FileStamp stamp = fileStamp(file);
  if (stamp.size < 0 || stamp.size > static_cast<std::int64_t>(largestFile))
    return {};
  const auto key =
      fmt::format("{}\n{} {} {}", file.string(), stamp.modifiedNanoseconds, stamp.size, pixels);
  const auto digest = QCryptographicHash::hash(
      QByteArrayView(key.data(), static_cast<qsizetype>(key.size())), QCryptographicHash::Sha1);
  const fs::path kept = places_.cache / (digest.toHex().toStdString() + ".png");
  if (auto image = readSquare(kept, pixels); image.width() == pixels)
    return image;
  const QImage image = drawVectorPicture(modules_.program("tavrin-svg"), file, pixels);
  if (image.isNull())
    return {};
  QByteArray bytes;
  QBuffer buffer(&bytes);
  if (image.save(&buffer, "PNG")) {
    try {
      fs::create_directories(places_.cache);
      prune(places_.cache);
      writeFileAtomically(kept, {bytes.constData(), static_cast<std::size_t>(bytes.size())});
    } catch (const std::exception&) {
      // Drawn again next time.
    }
  }
  return image;
}

} // namespace tavrin
