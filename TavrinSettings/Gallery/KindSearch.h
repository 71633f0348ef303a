#pragma once

#include "TavrinCore/Widgets/DockWidget.h"

#include <string_view>
#include <vector>

namespace tavrin {

/// The kinds that a person may mean by `text`: every word of it begins a word of the kind's title,
/// key, purpose or further words, case aside. Those whose title it begins come first, then those
/// whose title or further words have it, and last those of whose purpose it is a part; otherwise in
/// the order of the kinds. An empty text means all.
std::vector<const KindInfo*> kindsMatching(std::string_view text);

} // namespace tavrin
