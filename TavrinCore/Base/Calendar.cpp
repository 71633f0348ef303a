#include "TavrinCore/Base/Calendar.h"

#include "TavrinCore/Text/SystemLocale.h"

#include <cmath>
#include <cstdlib>
#include <map>
#include <stdexcept>
#include <unicode/dtptngen.h>
#include <unicode/gregocal.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>

namespace tavrin {
namespace {

/// ICU's calendars reach further; beyond this a double has no whole milliseconds.
constexpr double furthestSeconds = 1e12;

void check(UErrorCode status, const char* what) {
  if (U_FAILURE(status))
    throw std::runtime_error(std::string("Failed to ") + what + " because " + u_errorName(status));
}

UDate milliseconds(Date date) {
  return std::floor(date.unixSeconds() * 1000);
}
Date fromMilliseconds(UDate value) {
  return Date::fromUnixSeconds(value / 1000);
}

std::string utf8(const icu::UnicodeString& text) {
  std::string out;
  text.toUTF8String(out);
  return out;
}

std::string formatted(const icu::DateFormat& format, Date date) {
  icu::UnicodeString out;
  return utf8(format.format(milliseconds(date), out));
}

std::string systemTimeZoneID() {
  const std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::detectHostTimeZone());
  icu::UnicodeString id;
  return utf8(zone->getID(id));
}

icu::UnicodeString unicode(std::string_view text) {
  return icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), int32_t(text.size())));
}

} // namespace

struct Calendar::Engine {
  icu::Locale locale;
  std::unique_ptr<icu::TimeZone> zone;
  std::unique_ptr<icu::GregorianCalendar> calendar;
  using Style = icu::DateFormat::EStyle;
  std::map<std::string, std::unique_ptr<icu::DateFormat>, std::less<>> formats;
  /// Of date and time.
  std::map<std::pair<Style, Style>, std::unique_ptr<icu::DateFormat>> styledFormats;
  std::map<std::string, std::string, std::less<>> patterns;
  std::optional<bool> uses24HourClock;

  Engine(const std::string& timeZoneID, const std::string& localeID)
      : locale(icu::Locale::createCanonical(localeID.c_str())),
        zone(icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(timeZoneID))) {
    UErrorCode status = U_ZERO_ERROR;
    calendar = std::make_unique<icu::GregorianCalendar>(*zone, locale, status);
    check(status, "make a calendar");
    // Where clocks skip midnight the day begins with the first moment there is; where they repeat
    // it, with the earlier one.
    calendar->setSkippedWallTimeOption(UCAL_WALLTIME_NEXT_VALID);
    calendar->setRepeatedWallTimeOption(UCAL_WALLTIME_FIRST);
  }

  int field(UCalendarDateFields name) {
    UErrorCode status = U_ZERO_ERROR;
    const int value = calendar->get(name, status);
    check(status, "read a date");
    return value;
  }

  void goTo(Date date) {
    UErrorCode status = U_ZERO_ERROR;
    calendar->setTime(milliseconds(date), status);
    check(status, "read a date");
  }

  Date moment(int year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
    UErrorCode status = U_ZERO_ERROR;
    calendar->clear();
    calendar->set(UCAL_EXTENDED_YEAR, year);
    calendar->set(UCAL_MONTH, month);
    calendar->set(UCAL_DATE, day);
    calendar->set(UCAL_HOUR_OF_DAY, hour);
    calendar->set(UCAL_MINUTE, minute);
    calendar->set(UCAL_SECOND, second);
    const UDate value = calendar->getTime(status);
    check(status, "compute a date");
    return fromMilliseconds(value);
  }

  const icu::DateFormat& format(std::string_view pattern) {
    if (const auto found = formats.find(pattern); found != formats.end())
      return *found->second;
    UErrorCode status = U_ZERO_ERROR;
    auto made = std::make_unique<icu::SimpleDateFormat>(unicode(pattern), locale, status);
    check(status, "make a date format");
    made->setTimeZone(*zone);
    return *formats.emplace(pattern, std::move(made)).first->second;
  }

  const icu::DateFormat& format(Style date, Style time) {
    auto& made = styledFormats[{date, time}];
    if (!made) {
      made.reset(icu::DateFormat::createDateTimeInstance(date, time, locale));
      check(made ? U_ZERO_ERROR : U_MISSING_RESOURCE_ERROR, "make a date format");
      made->setTimeZone(*zone);
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
  const std::unique_ptr<icu::TimeZone> zone(
      icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(timeZoneID)));
  return !(*zone == icu::TimeZone::getUnknown());
}

Calendar Calendar::inTimeZone(const std::string& timeZoneID) const {
  return isKnownTimeZone(timeZoneID) ? Calendar(timeZoneID, localeID_) : *this;
}

std::optional<DateInterval> Calendar::dateInterval(CalendarUnit unit, Date date) const {
  if (!(std::fabs(date.secondsSinceReferenceDate) <= furthestSeconds))
    return std::nullopt;
  Engine& use = engine();
  use.goTo(date);
  const int year = use.field(UCAL_EXTENDED_YEAR);
  const int month = use.field(UCAL_MONTH);
  const int day = use.field(UCAL_DATE);
  switch (unit) {
  case CalendarUnit::day:
    return DateInterval{use.moment(year, month, day), use.moment(year, month, day + 1)};
  case CalendarUnit::week: {
    const int weekday = use.field(UCAL_DAY_OF_WEEK);
    const int first = day - (weekday - use.calendar->getFirstDayOfWeek() + 7) % 7;
    return DateInterval{use.moment(year, month, first), use.moment(year, month, first + 7)};
  }
  case CalendarUnit::month:
    return DateInterval{use.moment(year, month, 1), use.moment(year, month + 1, 1)};
  case CalendarUnit::year:
    return DateInterval{use.moment(year, 0, 1), use.moment(year + 1, 0, 1)};
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
  Engine& use = engine();
  use.goTo(date);
  return {use.field(UCAL_EXTENDED_YEAR), use.field(UCAL_MONTH) + 1, use.field(UCAL_DATE),
          use.field(UCAL_HOUR_OF_DAY),   use.field(UCAL_MINUTE),    use.field(UCAL_SECOND),
          use.field(UCAL_DAY_OF_WEEK)};
}

Date Calendar::date(const DateComponents& parts) const {
  return engine().moment(parts.year, parts.month - 1, parts.day, parts.hour, parts.minute,
                         parts.second);
}

std::string Calendar::text(Date date, std::string_view pattern) const {
  if (pattern.empty())
    return {};
  return formatted(engine().format(pattern), date);
}

std::string Calendar::localText(Date date, std::string_view skeleton) const {
  return text(date, engine().pattern(skeleton));
}

std::string Calendar::dateAndTime(Date date) const {
  return formatted(engine().format(icu::DateFormat::kMedium, icu::DateFormat::kShort), date);
}

std::string Calendar::timeOfDay(Date date) const {
  return formatted(engine().format(icu::DateFormat::kNone, icu::DateFormat::kShort), date);
}

std::string Calendar::fullDate(Date date) const {
  return formatted(engine().format(icu::DateFormat::kFull, icu::DateFormat::kNone), date);
}

bool Calendar::uses24HourClock() const {
  Engine& use = engine();
  if (!use.uses24HourClock)
    use.uses24HourClock = use.pattern("j").find('a') == std::string::npos;
  return *use.uses24HourClock;
}

} // namespace tavrin
