#pragma once

#include <string>

namespace tavrin {

/// The identifier of the user's locale in one category of the environment, such as "LC_TIME" or
/// "LC_NUMERIC". ICU alone goes by the locale for messages.
std::string systemLocaleID(const char* category);

} // namespace tavrin
