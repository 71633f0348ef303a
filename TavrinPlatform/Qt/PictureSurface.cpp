#include "TavrinPlatform/Qt/PictureSurface.h"

#include "TavrinCore/Base/Errors.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinPlatform/Files/Descriptor.h"

#include <QBuffer>
#include <QImageWriter>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace tavrin {

namespace {

constexpr double scale = 2;
/// Fast over small: the file changes every second.
constexpr int compressionLevel = 10;
constexpr std::chrono::seconds retryInterval{5};

/// Replaces the file for its readers, who see the old picture or the new one. Not flushed to
/// the disk: a picture lost in a crash is drawn again. 0, or the number of what went wrong.
int replaceFile(const std::filesystem::path& file, const QByteArray& bytes) {
  const std::string temporary = file.string() + ".new";
  Descriptor descriptor(
      ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, 0644));
  if (!descriptor)
    return errno;
  const auto size = static_cast<std::size_t>(bytes.size());
  const auto written = ::write(descriptor.number(), bytes.constData(), size);
  // Less than all of it was written where the disk is full.
  int error = written < 0 ? errno : written < bytes.size() ? ENOSPC : 0;
  descriptor.close();
  if (error == 0 && std::rename(temporary.c_str(), file.c_str()) != 0)
    error = errno;
  if (error != 0)
    ::unlink(temporary.c_str());
  return error;
}

} // namespace

PictureSurface::PictureSurface(std::filesystem::path file, double tileSize, LogSink& log)
    : file_(std::move(file)), log_(log, "tile") {
  format_.tileSize = tileSize;
  format_.scale = scale;
  retry_.setSingleShot(true);
  QObject::connect(&retry_, &QTimer::timeout, [this] { display(QImage(unwritten_)); });
}

PictureSurface::~PictureSurface() {
  // What is left would pass for a tile that lives.
  if (!shown_.isNull())
    ::unlink(file_.c_str());
}

void PictureSurface::setPlace(const DockTile::Place& place) {
  const int span = std::max(place.span, 1);
  if (std::exchange(format_.span, span) != span && events.formatChanged)
    events.formatChanged();
}

void PictureSurface::display(const QImage& image) {
  retry_.stop();
  unwritten_ = {};
  if (image == shown_)
    return;
  // A copy: the caller goes on painting into the same image.
  const QImage copy = image.copy();
  if (const auto reason = write(copy); !reason.empty()) {
    complain(reason);
    unwritten_ = copy;
    retry_.start(retryInterval);
    return;
  }
  shown_ = copy;
  hasComplained_ = false;
}

std::string PictureSurface::write(const QImage& image) const {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  QImageWriter writer(&buffer, "png");
  writer.setCompression(compressionLevel);
  if (!writer.write(image))
    return writer.errorString().toStdString();
  std::error_code error;
  std::filesystem::create_directories(file_.parent_path(), error);
  if (error)
    return error.message();
  const int number = replaceFile(file_, bytes);
  return number == 0 ? "" : std::strerror(number);
}

void PictureSurface::complain(const std::string& reason) {
  if (!std::exchange(hasComplained_, true))
    log_.error(failure(translated("write {file}", {{"file", file_.string()}}), reason));
}

} // namespace tavrin
