#include "TavrinPlatform/Linux/Devices/LinuxHostStatistics.h"

#include "TavrinPlatform/Files/Descriptor.h"
#include "TavrinPlatform/Linux/Devices/ProcDecoding.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace tavrin {
namespace {

/// What is wanted of /proc/stat and /proc/meminfo stands in their first lines.
constexpr std::size_t firstLines = 2048;
/// Some thousand links.
constexpr std::size_t allLinks = 512 * 1024;

} // namespace

LinuxHostStatistics::LinuxHostStatistics(const std::filesystem::path& root)
    : stat_(root / "proc/stat"), meminfo_(root / "proc/meminfo"), links_(root / "proc/net/dev") {}

std::string_view LinuxHostStatistics::read(const std::filesystem::path& file, std::size_t limit) {
  // A recorded tree may hold anything, a pipe too: never wait for it.
  const Descriptor descriptor(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (!descriptor)
    return {};
  std::size_t size = 0;
  while (size < limit) {
    if (buffer_.size() < limit && size == buffer_.size())
      buffer_.resize(std::min(limit, std::max<std::size_t>(4096, 2 * buffer_.size())));
    const ssize_t count =
        ::read(descriptor.number(), buffer_.data() + size, std::min(limit, buffer_.size()) - size);
    if (count < 0 && errno == EINTR)
      continue;
    if (count <= 0)
      break;
    size += static_cast<std::size_t>(count);
  }
  return {buffer_.data(), size};
}

std::optional<CPULoad> LinuxHostStatistics::cpuLoad() {
  return proc::cpuLoad(read(stat_, firstLines));
}

std::optional<MemoryLoad> LinuxHostStatistics::memoryLoad() {
  return proc::memoryLoad(read(meminfo_, firstLines));
}

void LinuxHostStatistics::eachLink(const LinkVisitor& visit) {
  proc::eachLink(read(links_, allLinks), visit);
}

} // namespace tavrin
