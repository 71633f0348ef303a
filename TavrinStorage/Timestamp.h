#pragma once

#include "TavrinCore/Base/Date.h"

#include <cstddef>
#include <string>

namespace tavrin {

/// "2026-11-14T21-20-47.123Z": sorts by time and may stand in a file name.
std::string fileStamp(Date date);
/// The length of every such stamp.
inline constexpr std::size_t fileStampLength = 24;

} // namespace tavrin
