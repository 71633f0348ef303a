#pragma once

#include "TavrinCore/Base/Coding.h"

namespace tavrin {

/// How the apps of a collection are laid out on its tile.
enum class CollectionLayout { grid, horizontal, vertical };

template <> struct EnumNames<CollectionLayout> {
  static constexpr std::array names = {
      std::pair{CollectionLayout::grid, std::string_view{"grid"}},
      std::pair{CollectionLayout::horizontal, std::string_view{"horizontal"}},
      std::pair{CollectionLayout::vertical, std::string_view{"vertical"}}};
};

template <> struct EnumTitles<CollectionLayout> {
  static constexpr auto titles =
      std::to_array<std::string_view>({marked("Grid"), marked("Row"), marked("Column")});
};

/// The number of columns for `count` apps, at least 1. A grid is as near a square as it gets.
constexpr int columns(CollectionLayout layout, int count) {
  switch (layout) {
  case CollectionLayout::horizontal:
    return count > 1 ? count : 1;
  case CollectionLayout::vertical:
    return 1;
  case CollectionLayout::grid:
    break;
  }
  std::int64_t side = 1;
  while (side * side < count)
    ++side;
  return static_cast<int>(side);
}

} // namespace tavrin
