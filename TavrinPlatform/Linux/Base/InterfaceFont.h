#pragma once

#include "TavrinPlatform/FileManager.h"

#include <optional>
#include <string>
#include <string_view>

namespace tavrin {

/// The family in a description such as "Noto Sans Medium Italic 11": the words before style and
/// size, of the first in a list. No value where there are none.
std::optional<std::string> fontFamilyOf(std::string_view description);

/// The size in the same descriptions, and in those of the form "Noto Sans,10,-1,5", in points; no
/// value where there is none.
std::optional<double> fontSizeOf(std::string_view description);

/// How much larger than usual texts are where the interface font has `points`: the desktops' own
/// defaults, 9 to 11, are usual.
double textScaleOf(double points);

/// What the file "kdeglobals" in the user's settings says of the general font; empty for nothing.
std::string fontInSettings(const FileManager& files);

/// The family that the file "kdeglobals" in the user's settings names as the general font.
std::optional<std::string> fontFamilyInSettings(const FileManager& files);

} // namespace tavrin
