#pragma once

#include "TavrinCore/Base/Coding.h"

namespace tavrin {

struct ShelfSettings {
  static constexpr std::string_view kindKey = "shelf";
  static constexpr int maximumCount = 40;

  /// Newest first.
  std::vector<std::string> paths;

  static constexpr auto fields() {
    return std::tuple{
        optional("paths", &ShelfSettings::paths)
            .titled("Files")
            .helped("What lies on the shelf, the newest first; drop files on the tile to add them.")
            .as(FieldRole::file)
            .ranging(0, maximumCount)};
  }
  bool operator==(const ShelfSettings&) const = default;
};

} // namespace tavrin
