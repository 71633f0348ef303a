#include "TavrinPlatform/Linux/PictureSurface.h"

#include "TavrinCore/Base/Errors.h"

#include <QBuffer>
#include <QImageWriter>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace tavrin {

namespace {

constexpr double scale = 2;
/// Fast over small: the file changes every second.
constexpr int compressionLevel = 10;

/// Replaces the file for its readers, who see the old picture or the new one. Not flushed to
/// the disk: a picture lost in a crash is drawn again.
bool replaceFile(const std::filesystem::path& file, const QByteArray& bytes) {
  const std::string temporary = file.string() + ".new";
  const int descriptor =
      ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, 0644);
  if (descriptor < 0)
    return false;
  const auto size = static_cast<std::size_t>(bytes.size());
  const bool isWritten = ::write(descriptor, bytes.constData(), size) == bytes.size();
  ::close(descriptor);
  if (isWritten && std::rename(temporary.c_str(), file.c_str()) == 0)
    return true;
  const int error = errno;
  ::unlink(temporary.c_str());
  errno = error;
  return false;
}

} // namespace

PictureSurface::PictureSurface(std::filesystem::path file, double tileSize, LogSink& log)
    : file_(std::move(file)), log_(log, "tile") {
  format_.tileSize = tileSize;
  format_.scale = scale;
}

void PictureSurface::setPlace(const DockTile::Place& place) {
  const int span = std::max(place.span, 1);
  if (std::exchange(format_.span, span) != span && events.formatChanged)
    events.formatChanged();
}

void PictureSurface::display(const QImage& image) {
  if (image == shown_)
    return;
  QByteArray bytes;
  QBuffer buffer(&bytes);
  QImageWriter writer(&buffer, "png");
  writer.setCompression(compressionLevel);
  std::error_code error;
  std::filesystem::create_directories(file_.parent_path(), error);
  if (writer.write(image) && replaceFile(file_, bytes)) {
    // A copy: the caller goes on painting into the same image.
    shown_ = image.copy();
    hasComplained_ = false;
    return;
  }
  if (!std::exchange(hasComplained_, true))
    log_.error(failure("write " + file_.string(), std::strerror(errno)));
}

} // namespace tavrin
