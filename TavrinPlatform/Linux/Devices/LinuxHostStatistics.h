#pragma once

#include "TavrinPlatform/HostStatistics.h"

#include <filesystem>
#include <vector>

namespace tavrin {

/// The kernel's counters in /proc. One buffer is kept for all of them.
class LinuxHostStatistics final : public HostStatistics {
public:
  /// `root` holds the folder proc; another one is for recorded machines.
  explicit LinuxHostStatistics(const std::filesystem::path& root = "/");

  std::optional<CPULoad> cpuLoad() override;
  std::optional<MemoryLoad> memoryLoad() override;
  void eachLink(const LinkVisitor& visit) override;

private:
  /// At most `limit` bytes from a file's beginning; empty where it cannot be read.
  std::string_view read(const std::filesystem::path& file, std::size_t limit);

  std::filesystem::path stat_;
  std::filesystem::path meminfo_;
  std::filesystem::path links_;
  std::vector<char> buffer_;
};

} // namespace tavrin
