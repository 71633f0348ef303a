#include "TavrinPlatform/macOS/Base/UserLanguages.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>

namespace tavrin {
namespace {

bool isSet(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr && *value != '\0';
}

/// "zh-Hans-CN" as "zh_CN": catalogues are named without the script.
std::string catalogueName(std::string_view tag) {
  const auto language = tag.substr(0, tag.find('-'));
  const auto last = tag.substr(tag.rfind('-') + 1);
  const bool hasRegion = last.size() < tag.size() && last.size() == 2;
  return std::string(language) + (hasRegion ? "_" + std::string(last) : "");
}

/// "en_US@rg=dezzzz;calendar=gregorian" as "en_DE": whose formats "rg" names counts.
std::string localeName(std::string identifier) {
  std::ranges::replace(identifier, '-', '_');
  const auto at = std::min(identifier.find('@'), identifier.size());
  const auto override = identifier.find("rg=", at);
  std::string name = identifier.substr(0, at);
  if (override == std::string::npos || override + 5 > identifier.size())
    return name;
  name.resize(std::min(name.find('_'), name.size()));
  const auto upper = [&](std::size_t i) {
    return static_cast<char>(std::toupper(static_cast<unsigned char>(identifier[i])));
  };
  return name + '_' + upper(override + 3) + upper(override + 4);
}

} // namespace

bool nameLanguages(PreferencesService& preferences, const std::string& application) {
  for (const char* name : {"TAVRIN_LANGUAGE", "LC_ALL", "LC_MESSAGES", "LANG"})
    if (isSet(name))
      return false;
  std::string languages;
  if (const auto list = preferences.copyAppValue("AppleLanguages", application); list && list->array())
    for (const auto& entry : *list->array())
      if (const auto* tag = entry.string(); tag != nullptr && !tag->empty())
        languages += (languages.empty() ? "" : ":") + catalogueName(*tag);
  const auto region = preferences.copyAppValue("AppleLocale", application);
  std::string locale = region && region->string() ? localeName(*region->string()) : "";
  if (locale.empty())
    locale = languages.substr(0, languages.find(':'));
  if (locale.empty())
    return false;
  ::setenv("LANG", (locale + ".UTF-8").c_str(), 1);
  if (!languages.empty())
    ::setenv("LANGUAGE", languages.c_str(), 1);
  return true;
}

} // namespace tavrin
