#include "TavrinPlatform/Linux/Applications/VectorDrawing.h"

#include "TavrinPlatform/Files/Descriptor.h"
#include "TavrinPlatform/POSIX/Spawn.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <poll.h>
#include <span>
#include <sys/wait.h>

namespace tavrin {
namespace {

using Clock = std::chrono::steady_clock;
constexpr std::chrono::seconds timeLimit{10};

/// Whether the pipe gave all the bytes wanted in time.
bool fill(std::span<uchar> wanted, int pipe) {
  const auto end = Clock::now() + timeLimit;
  while (!wanted.empty()) {
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
    pollfd watched{pipe, POLLIN, 0};
    if (left <= 0 || (::poll(&watched, 1, static_cast<int>(left)) < 0 && errno != EINTR))
      return false;
    if (watched.revents == 0)
      continue;
    const ssize_t count = ::read(pipe, wanted.data(), wanted.size());
    if (count == 0 || (count < 0 && errno != EINTR))
      return false;
    if (count > 0)
      wanted = wanted.subspan(static_cast<std::size_t>(count));
  }
  return true;
}

} // namespace

QImage drawVectorPicture(const std::filesystem::path& program, const std::filesystem::path& file,
                         int pixels) {
  Pipe pipe = Pipe::make();
  QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
  if (!pipe.reading || image.isNull())
    return {};
  const pid_t child = spawn({.program = program.string(),
                             .arguments = {file.string(), std::to_string(pixels)},
                             .output = pipe.writing.number()});
  pipe.writing.close();
  if (child < 0)
    return {};
  const bool isWhole =
      fill({image.bits(), static_cast<std::size_t>(image.sizeInBytes())}, pipe.reading.number());
  ::kill(child, SIGKILL);
  while (::waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
  }
  return isWhole ? image : QImage();
}

} // namespace tavrin
