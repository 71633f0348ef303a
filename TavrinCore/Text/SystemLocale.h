#pragma once

#include <string>

namespace tavrin {

/// The identifier of the user's locale in one category of the environment, such as "LC_TIME" or
/// "LC_NUMERIC". ICU alone goes by the locale for messages. TAVRIN_LANGUAGE stands for all
/// categories. Digits are 0 to 9 in every locale: what is counted, timed and measured stands side
/// by side, and not all of it is formatted by a locale.
std::string systemLocaleID(const char* category);

} // namespace tavrin
