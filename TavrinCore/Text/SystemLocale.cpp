#include "TavrinCore/Text/SystemLocale.h"

#include <cstdlib>
#include <memory>
#include <string_view>
#include <unicode/locid.h>
#include <unicode/numsys.h>

namespace tavrin {

namespace {

icu::Locale systemLocale(const char* category) {
  for (const char* name : {"TAVRIN_LANGUAGE", "LC_ALL", category, "LANG"})
    if (const char* value = std::getenv(name); value != nullptr && *value != 0)
      return icu::Locale::createCanonical(value);
  return icu::Locale::getDefault();
}

} // namespace

std::string systemLocaleID(const char* category) {
  auto locale = systemLocale(category);
  UErrorCode error = U_ZERO_ERROR;
  const std::unique_ptr<icu::NumberingSystem> digits(
      icu::NumberingSystem::createInstance(locale, error));
  if (U_SUCCESS(error) && std::string_view(digits->getName()) != "latn")
    locale.setKeywordValue("numbers", "latn", error);
  return locale.getName();
}

} // namespace tavrin
