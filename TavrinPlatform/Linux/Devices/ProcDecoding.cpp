#include "TavrinPlatform/Linux/Devices/ProcDecoding.h"

#include "TavrinCore/Text/Text.h"

#include <array>
#include <charconv>

namespace tavrin::proc {
namespace {

/// Cuts a number off `line`, and the blanks before it.
std::optional<std::uint64_t> nextNumber(std::string_view& line) {
  line = withoutLeadingBlanks(line);
  std::uint64_t number = 0;
  const auto [end, error] = std::from_chars(line.data(), line.data() + line.size(), number);
  if (error != std::errc())
    return std::nullopt;
  line = line.substr(static_cast<std::size_t>(end - line.data()));
  return number;
}

} // namespace

std::optional<CPULoad> cpuLoad(std::string_view stat) {
  while (!stat.empty()) {
    std::string_view line = takeLine(stat);
    if (!line.starts_with("cpu "))
      continue;
    line.remove_prefix(4);
    // user, nice, system, idle, then by the kernel's age iowait, irq, softirq, steal.
    std::array<std::uint64_t, 8> ticks{};
    std::size_t count = 0;
    while (count < ticks.size()) {
      const auto number = nextNumber(line);
      if (!number)
        break;
      ticks[count++] = *number;
    }
    if (count < 4)
      return std::nullopt;
    return CPULoad{ticks[0], ticks[2] + ticks[5] + ticks[6] + ticks[7], ticks[3] + ticks[4],
                   ticks[1]};
  }
  return std::nullopt;
}

std::optional<MemoryLoad> memoryLoad(std::string_view meminfo) {
  constexpr std::uint64_t kilobyte = 1024;
  constexpr std::uint64_t most = std::uint64_t(-1) / kilobyte;
  std::optional<std::uint64_t> total;
  std::optional<std::uint64_t> available;
  std::optional<std::uint64_t> free;
  while (!meminfo.empty() && !(total && available)) {
    std::string_view line = takeLine(meminfo);
    const auto colon = line.find(':');
    if (colon == std::string_view::npos)
      continue;
    const auto key = line.substr(0, colon);
    line.remove_prefix(colon + 1);
    auto* value = key == "MemTotal"       ? &total
                  : key == "MemAvailable" ? &available
                  : key == "MemFree"      ? &free
                                          : nullptr;
    if (value != nullptr)
      *value = nextNumber(line);
  }
  // Kernels before 3.14 do not tell what is available.
  if (!available)
    available = free;
  if (!total || !available || *total > most)
    return std::nullopt;
  const std::uint64_t used = *total > *available ? *total - *available : 0;
  return MemoryLoad{used * kilobyte, *total * kilobyte};
}

void eachLink(std::string_view dev, const HostStatistics::LinkVisitor& visit) {
  constexpr int columnOfSent = 8;
  while (!dev.empty()) {
    std::string_view line = withoutLeadingBlanks(takeLine(dev));
    const auto colon = line.find(':');
    if (colon == std::string_view::npos || colon == 0)
      continue;
    const auto name = line.substr(0, colon);
    line.remove_prefix(colon + 1);
    const auto received = nextNumber(line);
    std::optional<std::uint64_t> sent = received;
    for (int column = 1; sent && column <= columnOfSent; ++column)
      sent = nextNumber(line);
    if (received && sent)
      visit(name, *received, *sent);
  }
}

} // namespace tavrin::proc
