#include "TavrinPlatform/Files/FileBeginning.h"

#include "TavrinPlatform/Files/Descriptor.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tavrin {
namespace {

std::optional<std::string> readOpen(int descriptor, std::size_t maximumSize) {
  struct stat info {};
  // Something else may stand there by now.
  if (::fstat(descriptor, &info) != 0 || !S_ISREG(info.st_mode))
    return std::nullopt;
  std::string bytes(std::min(maximumSize, static_cast<std::size_t>(info.st_size)), '\0');
  std::size_t size = 0;
  while (size < bytes.size()) {
    const ssize_t count = ::read(descriptor, bytes.data() + size, bytes.size() - size);
    if (count < 0 && errno == EINTR)
      continue;
    if (count < 0)
      return std::nullopt;
    if (count == 0)
      break;
    size += static_cast<std::size_t>(count);
  }
  bytes.resize(size);
  return bytes;
}

} // namespace

std::optional<std::string> readBeginning(const std::filesystem::path& file,
                                         std::size_t maximumSize) {
  struct stat info {};
  if (::stat(file.c_str(), &info) != 0 || !S_ISREG(info.st_mode))
    return std::nullopt;
  const Descriptor descriptor(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  return descriptor ? readOpen(descriptor.number(), maximumSize) : std::nullopt;
}

} // namespace tavrin
