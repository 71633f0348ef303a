#include "TavrinCore/Base/TimeZone.h"

#include "TavrinCore/Text/Texts.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <unicode/timezone.h>
#include <unicode/tznames.h>
#include <utility>

namespace tavrin {
namespace {

/// The library's name for what the C library makes of TZ, rules included.
constexpr const char* byCLibrary = "libc:localtime";
/// The library's name for the system's own file.
constexpr const char* bySystemFile = "localtime";

/// TZ without its colon; no value where it is not set. Set to nothing it means UTC.
std::optional<std::string> environmentZone() {
  const char* value = std::getenv("TZ");
  if (value == nullptr)
    return std::nullopt;
  const std::string_view text(value);
  const std::string name(text.starts_with(':') ? text.substr(1) : text);
  return name.empty() ? "UTC" : name;
}

/// POSIX's form: a name of three letters or more, or any in angle brackets, and hours.
bool isRule(std::string_view text) {
  std::size_t end = 0;
  if (text.starts_with('<')) {
    end = std::min(text.find('>'), text.size() - 1) + 1;
  } else {
    while (end < text.size() && std::isalpha(static_cast<unsigned char>(text[end])))
      ++end;
    if (end < 3)
      return false;
  }
  if (end < text.size() && (text[end] == '+' || text[end] == '-'))
    ++end;
  return end < text.size() && std::isdigit(static_cast<unsigned char>(text[end]));
}

/// "Area/City", as the names in the time zone database are made.
bool isName(std::string_view id) {
  constexpr std::size_t longest = 64;
  if (id.empty() || id.size() > longest || id.front() == '/' || id.back() == '/')
    return false;
  return std::ranges::all_of(id, [](unsigned char letter) {
    return std::isalnum(letter) || letter == '/' || letter == '_' || letter == '-' || letter == '+';
  });
}

std::optional<cctz::time_zone> loaded(const std::string& name) {
  cctz::time_zone zone;
  if (!cctz::load_time_zone(name, &zone))
    return std::nullopt;
  return zone;
}

/// The name behind the folder of the zone files, so that a path to one of them has the zone's name.
std::string nameOfPath(const std::string& path) {
  constexpr std::string_view folder = "/zoneinfo/";
  const auto found = path.rfind(folder);
  const auto name = found == std::string::npos ? "" : path.substr(found + folder.size());
  return isName(name) && loaded(name) ? name : path;
}

std::string hostTimeZoneID() {
  const std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::detectHostTimeZone());
  icu::UnicodeString id;
  std::string name;
  zone->getID(id).toUTF8String(name);
  return isName(name) && loaded(name) ? name : bySystemFile;
}

} // namespace

std::optional<cctz::time_zone> timeZone(const std::string& id) {
  if (const auto zone = isName(id) ? loaded(id) : std::nullopt)
    return zone;
  if (const auto own = environmentZone(); own && id == systemTimeZoneID())
    return id.front() == '/' ? loaded(id) : loaded(byCLibrary);
  return std::nullopt;
}

ZoneMoment momentOf(const cctz::civil_second& wall, const cctz::time_zone& zone) {
  if (zone.name() != byCLibrary) {
    const auto found = zone.lookup(wall);
    return found.kind == cctz::time_zone::civil_lookup::SKIPPED ? found.trans : found.pre;
  }
  // For the C library's zone that lookup goes wrong where the rule has no summer time.
  constexpr cctz::seconds day(86'400);
  const auto greenwich = cctz::convert(wall, cctz::utc_time_zone());
  const auto under = [&](ZoneMoment rules) {
    return greenwich - cctz::seconds(zone.lookup(rules).offset);
  };
  auto [first, last] = std::minmax({under(greenwich - day), under(greenwich + day)});
  for (const auto moment : {first, last})
    if (cctz::convert(moment, zone) == wall)
      return moment;
  const int before = zone.lookup(first).offset;
  while (last - first > cctz::seconds(1)) {
    const auto middle = first + (last - first) / 2;
    (zone.lookup(middle).offset == before ? first : last) = middle;
  }
  return last;
}

std::string systemTimeZoneID() {
  const auto name = environmentZone();
  if (!name)
    return hostTimeZoneID();
  if (isName(*name) && loaded(*name))
    return *name;
  if (name->front() == '/' && loaded(*name))
    return nameOfPath(*name);
  return isRule(*name) ? *name : "UTC";
}

std::string cityOf(std::string_view zoneID) {
  std::string city(zoneID.substr(zoneID.rfind('/') + 1));
  std::ranges::replace(city, '_', ' ');
  return city;
}

std::string localCityOf(const std::string& zoneID) {
  const std::string language = textLanguage();
  if (language == "en")
    return cityOf(zoneID);
  // Kept for a list of all zones, which asks some six hundred times.
  thread_local std::pair<std::string, std::unique_ptr<icu::TimeZoneNames>> kept;
  if (kept.second == nullptr || kept.first != language) {
    UErrorCode error = U_ZERO_ERROR;
    const icu::Locale locale(language.substr(0, language.find('@')).c_str());
    kept = {language,
            std::unique_ptr<icu::TimeZoneNames>(icu::TimeZoneNames::createInstance(locale, error))};
  }
  icu::UnicodeString city;
  if (kept.second != nullptr)
    kept.second->getExemplarLocationName(icu::UnicodeString::fromUTF8(zoneID), city);
  std::string name;
  return city.isEmpty() || city.isBogus() ? cityOf(zoneID) : city.toUTF8String(name);
}

} // namespace tavrin
