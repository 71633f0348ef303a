#include "TavrinWidgetsUI/Kit/Pictures/KindSymbols.h"

#include "TavrinCore/Widgets/DockWidget.h"

#include <algorithm>

namespace tavrin {

std::string_view kindSymbol(std::string_view key) {
  const auto kinds = allKinds();
  const auto found = std::ranges::find(kinds, key, &KindInfo::key);
  return found == kinds.end() ? "questionmark.square" : found->symbol;
}

} // namespace tavrin
