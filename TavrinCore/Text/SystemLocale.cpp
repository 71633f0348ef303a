#include "TavrinCore/Text/SystemLocale.h"

#include <cstdlib>
#include <unicode/locid.h>

namespace tavrin {

std::string systemLocaleID(const char* category) {
  for (const char* name : {"LC_ALL", category, "LANG"})
    if (const char* value = std::getenv(name); value != nullptr && *value != 0)
      return icu::Locale::createCanonical(value).getName();
  return icu::Locale::getDefault().getName();
}

} // namespace tavrin
