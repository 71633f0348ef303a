#pragma once

#include "TavrinCore/Base/Date.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tavrin {

/// "2026-11-14T21-20-47.123Z": sorts by time and may stand in a file name.
std::string fileStamp(Date date);
/// Reads one; no value for anything else.
std::optional<Date> dateFromFileStamp(std::string_view stamp);
/// The length of every such stamp.
inline constexpr std::size_t fileStampLength = 24;

} // namespace tavrin
