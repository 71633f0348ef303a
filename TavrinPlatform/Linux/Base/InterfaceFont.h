#pragma once

#include "TavrinPlatform/FileManager.h"

#include <optional>
#include <string>
#include <string_view>

namespace tavrin {

/// The family in a description such as "Noto Sans Medium Italic 11": the words before style and
/// size, of the first in a list. No value where there are none.
std::optional<std::string> fontFamilyOf(std::string_view description);

/// The family that the file "kdeglobals" in the user's settings names as the general font.
std::optional<std::string> fontFamilyInSettings(const FileManager& files);

} // namespace tavrin
