#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tavrin {

/// The days of a usage chart, the last of them today.
struct UsageChart {
  std::vector<std::int64_t> tokens;
  /// What stands below the first day and the last.
  std::string first;
  std::string last;

  /// A column of blocks for each day, the greatest number beside the top; no lines where a terminal
  /// of so many `columns` has no room, or where nothing was used.
  std::vector<std::string> lines(int columns) const;
};

} // namespace tavrin
