#include "TavrinCore/Base/Calendar.h"

#include "TavrinCore/Base/TimeZone.h"
#include "TavrinCore/Text/SystemLocale.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>
#include <stdexcept>
#include <unicode/dtptngen.h>
#include <unicode/gregocal.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>

namespace tavrin {
namespace {

/// Beyond this a double has no whole milliseconds.
constexpr double furthestSeconds = 1e12;

void check(UErrorCode status, const char* what) {
  if (U_FAILURE(status))
    throw std::runtime_error(std::string("Failed to ") + what + " because " + u_errorName(status));
}

std::string utf8(const icu::UnicodeString& text) {
  std::string out;
  text.toUTF8String(out);
  return out;
}

icu::UnicodeString unicode(std::string_view text) {
  return icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), int32_t(text.size())));
}

ZoneMoment momentOf(Date date) {
  constexpr double reach = 1e14;
  const double seconds = std::floor(date.unixSeconds());
  if (std::isnan(seconds))
    check(U_ILLEGAL_ARGUMENT_ERROR, "read a date");
  return ZoneMoment(cctz::seconds(static_cast<std::int64_t>(std::clamp(seconds, -reach, reach))));
}

Date dateOf(ZoneMoment moment) {
  return Date::fromUnixSeconds(static_cast<double>(moment.time_since_epoch().count()));
}

/// Sunday is 1.
int weekdayOf(const cctz::civil_day& day) {
  return (static_cast<int>(cctz::get_weekday(day)) + 1) % 7 + 1;
}

} // namespace

/// Zones are the system's, words and formats ICU's: ICU is given the wall's time as if it were
/// Greenwich's, and brings no rules of its own.
struct Calendar::Engine {
  icu::Locale locale;
  cctz::time_zone zone;
  using Style = icu::DateFormat::EStyle;
  std::map<std::string, std::unique_ptr<icu::DateFormat>, std::less<>> formats;
  /// Of date and time.
  std::map<std::pair<Style, Style>, std::unique_ptr<icu::DateFormat>> styledFormats;
  std::map<std::string, std::string, std::less<>> patterns;
  std::optional<bool> uses24HourClock;
  std::optional<int> firstWeekday;

  Engine(const std::string& timeZoneID, const std::string& localeID)
      : locale(icu::Locale::createCanonical(localeID.c_str())),
        zone(timeZone(timeZoneID).value_or(cctz::utc_time_zone())) {}

  cctz::civil_second wall(Date date) const { return cctz::convert(momentOf(date), zone); }

  Date moment(const cctz::civil_second& wall) const { return dateOf(momentOf(wall, zone)); }

  /// Of the locale's week, 1 to 7.
  int weekStart() {
    if (!firstWeekday) {
      UErrorCode status = U_ZERO_ERROR;
      const icu::GregorianCalendar calendar(*icu::TimeZone::getGMT(), locale, status);
      check(status, "make a calendar");
      firstWeekday = calendar.getFirstDayOfWeek(status);
      check(status, "make a calendar");
    }
    return *firstWeekday;
  }

  std::string formatted(const icu::DateFormat& format, Date date) const {
    const auto moment = momentOf(date);
    const double offset = zone.lookup(moment).offset;
    const UDate milliseconds = std::floor((date.unixSeconds() + offset) * 1000);
    icu::UnicodeString out;
    return utf8(format.format(milliseconds, out));
  }

  const icu::DateFormat& format(std::string_view pattern) {
    if (const auto found = formats.find(pattern); found != formats.end())
      return *found->second;
    UErrorCode status = U_ZERO_ERROR;
    auto made = std::make_unique<icu::SimpleDateFormat>(unicode(pattern), locale, status);
    check(status, "make a date format");
    made->setTimeZone(*icu::TimeZone::getGMT());
    return *formats.emplace(pattern, std::move(made)).first->second;
  }

  const icu::DateFormat& format(Style date, Style time) {
    auto& made = styledFormats[{date, time}];
    if (!made) {
      made.reset(icu::DateFormat::createDateTimeInstance(date, time, locale));
      check(made ? U_ZERO_ERROR : U_MISSING_RESOURCE_ERROR, "make a date format");
      made->setTimeZone(*icu::TimeZone::getGMT());
    }
    return *made;
  }

  /// The locale's pattern for a skeleton.
  const std::string& pattern(std::string_view skeleton) {
    if (const auto found = patterns.find(skeleton); found != patterns.end())
      return found->second;
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::DateTimePatternGenerator> generator(
        icu::DateTimePatternGenerator::createInstance(locale, status));
    check(status, "read the locale's date formats");
    const auto best = generator->getBestPattern(unicode(skeleton), status);
    check(status, "read the locale's date formats");
    return patterns.emplace(skeleton, utf8(best)).first->second;
  }
};

Calendar::Calendar(std::string timeZoneID, std::string localeID)
    : timeZoneID_(std::move(timeZoneID)), localeID_(std::move(localeID)) {
  if (timeZoneID_.empty() || !isKnownTimeZone(timeZoneID_))
    timeZoneID_ = systemTimeZoneID();
  if (localeID_.empty())
    localeID_ = systemLocaleID("LC_TIME");
}

Calendar::Calendar(const Calendar& other)
    : timeZoneID_(other.timeZoneID_), localeID_(other.localeID_) {}
Calendar::Calendar(Calendar&& other) noexcept = default;
Calendar& Calendar::operator=(const Calendar& other) {
  if (!(*this == other))
    *this = Calendar(other);
  return *this;
}
Calendar& Calendar::operator=(Calendar&& other) noexcept = default;
Calendar::~Calendar() = default;

Calendar::Engine& Calendar::engine() const {
  if (!engine_)
    engine_ = std::make_unique<Engine>(timeZoneID_, localeID_);
  return *engine_;
}

bool Calendar::isKnownTimeZone(const std::string& timeZoneID) {
  return timeZone(timeZoneID).has_value();
}

Calendar Calendar::inTimeZone(const std::string& timeZoneID) const {
  return isKnownTimeZone(timeZoneID) ? Calendar(timeZoneID, localeID_) : *this;
}

std::optional<DateInterval> Calendar::dateInterval(CalendarUnit unit, Date date) const {
  if (!(std::fabs(date.secondsSinceReferenceDate) <= furthestSeconds))
    return std::nullopt;
  Engine& use = engine();
  const cctz::civil_second now = use.wall(date);
  const cctz::civil_day day(now);
  const auto between = [&](const auto& first, const auto& next) {
    return DateInterval{use.moment(cctz::civil_second(first)), use.moment(cctz::civil_second(next))};
  };
  switch (unit) {
  case CalendarUnit::day:
    return between(day, day + 1);
  case CalendarUnit::week: {
    const auto first = day - (weekdayOf(day) - use.weekStart() + 7) % 7;
    return between(first, first + 7);
  }
  case CalendarUnit::month:
    return between(cctz::civil_month(now), cctz::civil_month(now) + 1);
  case CalendarUnit::year:
    return between(cctz::civil_year(now), cctz::civil_year(now) + 1);
  }
  return std::nullopt;
}

bool Calendar::isSameDay(Date first, Date second) const {
  const auto day = dateInterval(CalendarUnit::day, first);
  return day ? day->contains(second) : first == second;
}

Date Calendar::startOfDay(Date date) const {
  const auto day = dateInterval(CalendarUnit::day, date);
  return day ? day->start : date;
}

Date Calendar::addingDays(int days, Date date) const {
  auto moment = components(date);
  const double fraction =
      date.secondsSinceReferenceDate - this->date(moment).secondsSinceReferenceDate;
  moment.day += days;
  return this->date(moment) + (fraction < 1 ? fraction : 0);
}

DateComponents Calendar::components(Date date) const {
  const auto wall = engine().wall(date);
  return {static_cast<int>(wall.year()), wall.month(),  wall.day(),
          wall.hour(),                   wall.minute(), wall.second(),
          weekdayOf(cctz::civil_day(wall))};
}

Date Calendar::date(const DateComponents& parts) const {
  return engine().moment(cctz::civil_second(parts.year, parts.month, parts.day, parts.hour,
                                            parts.minute, parts.second));
}

std::string Calendar::text(Date date, std::string_view pattern) const {
  if (pattern.empty())
    return {};
  return engine().formatted(engine().format(pattern), date);
}

std::string Calendar::localText(Date date, std::string_view skeleton) const {
  return text(date, engine().pattern(skeleton));
}

std::string Calendar::dateAndTime(Date date) const {
  return engine().formatted(engine().format(icu::DateFormat::kMedium, icu::DateFormat::kShort), date);
}

std::string Calendar::timeOfDay(Date date) const {
  return engine().formatted(engine().format(icu::DateFormat::kNone, icu::DateFormat::kShort), date);
}

std::string Calendar::fullDate(Date date) const {
  return engine().formatted(engine().format(icu::DateFormat::kFull, icu::DateFormat::kNone), date);
}

bool Calendar::uses24HourClock() const {
  Engine& use = engine();
  if (!use.uses24HourClock)
    use.uses24HourClock = use.pattern("j").find('a') == std::string::npos;
  return *use.uses24HourClock;
}

} // namespace tavrin
