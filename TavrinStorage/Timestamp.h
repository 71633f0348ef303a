#pragma once

#include "TavrinCore/Base/Date.h"

#include <optional>
#include <string>
#include <string_view>

namespace tavrin {

/// "2026-11-14T21:20:47Z"; what is below a second is dropped.
std::string iso8601(Date date);
/// Reads the form above, with or without a fraction of a second.
std::optional<Date> dateFromISO8601(std::string_view text);

/// "2026-11-14T21-20-47.123Z": sorts by time and may stand in a file name.
std::string fileStamp(Date date);
/// The length of every such stamp in the years 0 to 9999.
inline constexpr std::size_t fileStampLength = 24;

} // namespace tavrin
