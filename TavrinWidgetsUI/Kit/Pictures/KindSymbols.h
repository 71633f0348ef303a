#pragma once

#include "TavrinCore/Widgets/DockWidget.h"

#include <string_view>

namespace tavrin {

/// The symbol that stands for a kind, by its key: "clock" has "clock".
std::string_view kindSymbol(std::string_view key);

} // namespace tavrin
