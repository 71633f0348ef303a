#pragma once

#include "TavrinCore/Base/Coding.h"

namespace tavrin {

struct ShelfSettings {
  static constexpr int maximumCount = 40;

  /// Newest first.
  std::vector<std::string> paths;

  static constexpr auto fields() {
    return std::tuple{
        optional("paths", &ShelfSettings::paths).titled("Files").ranging(0, maximumCount)};
  }
  bool operator==(const ShelfSettings&) const = default;
};

} // namespace tavrin
