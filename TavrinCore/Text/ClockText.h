#pragma once

#include <cstdint>
#include <string>

namespace tavrin {

/// "%d:%02d" below an hour, from there on "%d:%02d:%02d"; a negative number counts as 0.
std::string clockText(std::int64_t seconds);

/// `seconds` as an integer, for displays: kept within what an integer holds, 0 when not a number.
std::int64_t wholeSeconds(double seconds);

/// "5 min", "1 h", "1 h 5 min": a length of time in hours and minutes; negative counts as 0.
std::string durationText(std::int64_t minutes);

} // namespace tavrin
