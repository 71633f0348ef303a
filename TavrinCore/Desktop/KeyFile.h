#pragma once

#include <functional>
#include <string_view>

namespace tavrin {

/// Reads the groups of a key file, the format of desktop entries, icon themes and the settings of
/// toolkits: calls `take` for each "key=value" line with the group it stands in. Spaces around the
/// key and the equals sign are left away, the value is as written. Comments, lines without an
/// equals sign, lines longer than `longestKeyFileLine` and what stands before the first group are
/// passed over. Of a group that occurs twice the later part counts as well.
void eachKeyFileLine(std::string_view text,
                     const std::function<void(std::string_view group, std::string_view key,
                                              std::string_view value)>& take);

inline constexpr std::size_t longestKeyFileLine = 65'536;

} // namespace tavrin
