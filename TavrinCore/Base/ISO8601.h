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

/// In UTC with whole seconds: 2025-03-30T01:59:59Z. What is below a second is dropped; a date
/// beyond the years 0 to 9999 is written as the nearest one in them.
std::string iso8601(Date date);

/// The same with milliseconds: 2025-03-30T01:59:59.250Z.
std::string iso8601WithMilliseconds(Date date);

} // namespace tavrin
