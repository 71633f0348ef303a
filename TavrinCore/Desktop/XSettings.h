#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tavrin {

/// The text named `name` in the settings that a desktop's settings manager tells X programs (the
/// property of XSETTINGS 0.5 at freedesktop.org); none where it is missing, empty or no text.
std::optional<std::string> textInXSettings(std::string_view property, std::string_view name);

/// The same for a whole number.
std::optional<std::int32_t> integerInXSettings(std::string_view property, std::string_view name);

} // namespace tavrin
