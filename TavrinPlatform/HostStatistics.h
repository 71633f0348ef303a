#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>

namespace tavrin {

/// What the processors did since the computer started, in ticks of any length.
struct CPULoad {
  std::uint64_t user = 0;
  std::uint64_t system = 0;
  std::uint64_t idle = 0;
  std::uint64_t nice = 0;
  bool operator==(const CPULoad&) const = default;
};

/// Bytes.
struct MemoryLoad {
  std::uint64_t used = 0;
  std::uint64_t physical = 0;
  bool operator==(const MemoryLoad&) const = default;
};

/// The computer's own counters, read at each call on the calling thread; a call costs far less
/// than a millisecond. What cannot be read has no value.
class HostStatistics {
public:
  /// A network link and the bytes it received and sent since it came up.
  using LinkVisitor =
      std::function<void(std::string_view name, std::uint64_t received, std::uint64_t sent)>;

  virtual ~HostStatistics() = default;
  virtual std::optional<CPULoad> cpuLoad() = 0;
  virtual std::optional<MemoryLoad> memoryLoad() = 0;
  /// Every link, loopbacks included, in the system's order; none where they cannot be read.
  virtual void eachLink(const LinkVisitor& visit) = 0;
};

} // namespace tavrin
