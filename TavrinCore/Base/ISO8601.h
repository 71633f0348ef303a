#pragma once

#include "TavrinCore/Base/Date.h"

#include <optional>
#include <string>
#include <string_view>

namespace tavrin {

/// A date and time of ISO 8601's extended format with its zone, such as 2025-03-30T01:59:59.250Z
/// or 2025-03-30T03:00:00+02:00; seconds may have a fraction, a leap second counts as the next
/// second. No value for anything else.
std::optional<Date> dateFromISO8601(std::string_view text);

/// In UTC with milliseconds: 2025-03-30T01:59:59.250Z.
std::string iso8601(Date date);

} // namespace tavrin
