#include "TavrinCore/Settings/SettingText.h"

#include "TavrinCore/Base/Calendar.h"
#include "TavrinCore/Text/Numbers.h"
#include "TavrinCore/Text/Text.h"
#include "TavrinCore/Text/Texts.h"

#include <array>
#include <charconv>
#include <cmath>
#include <fmt/format.h>
#include <type_traits>

namespace tavrin {
namespace {

constexpr double minute = 60;
constexpr double hour = 3600;
constexpr double day = 86400;

/// Takes a number off the front of `text`; no value when there is none.
template <class Number> std::optional<Number> takeNumber(std::string_view& text) {
  Number number{};
  const char* last = text.data() + text.size();
  std::from_chars_result result{};
  if constexpr (std::is_floating_point_v<Number>)
    result = doubleFromChars(text.data(), last, number);
  else
    result = std::from_chars(text.data(), last, number);
  const auto [end, error] = result;
  if (error != std::errc())
    return std::nullopt;
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return number;
}

bool take(std::string_view& text, std::string_view expected) {
  if (!text.starts_with(expected))
    return false;
  text.remove_prefix(expected.size());
  return true;
}

struct TimeUnit {
  std::string_view name;
  double seconds;
};

/// Those in which lengths of time are told, in the user's language.
constexpr std::array shownUnits = {TimeUnit{marked("d"), day}, TimeUnit{marked("h"), hour},
                                   TimeUnit{marked("min"), minute}, TimeUnit{marked("s"), 1}};

std::optional<double> takeTimeUnit(std::string_view& text) {
  // Longer names first: "min" before "m".
  constexpr std::array units = {
      TimeUnit{"seconds", 1},     TimeUnit{"minutes", minute}, TimeUnit{"second", 1},
      TimeUnit{"minute", minute}, TimeUnit{"hours", hour},     TimeUnit{"weeks", 7 * day},
      TimeUnit{"hour", hour},     TimeUnit{"days", day},       TimeUnit{"week", 7 * day},
      TimeUnit{"sec", 1},         TimeUnit{"min", minute},     TimeUnit{"day", day},
      TimeUnit{"s", 1},           TimeUnit{"m", minute},       TimeUnit{"h", hour},
      TimeUnit{"d", day},         TimeUnit{"w", 7 * day}};
  for (const auto& unit : units)
    if (take(text, unit.name))
      return unit.seconds;
  for (const auto& unit : shownUnits)
    if (take(text, translation(unit.name)))
      return unit.seconds;
  return std::nullopt;
}

/// "1:30" is minutes and seconds, "1:30:00" hours, minutes and seconds.
std::optional<double> clockDuration(std::string_view text) {
  double total = 0;
  for (int parts = 1;; ++parts) {
    const auto part = takeNumber<int>(text);
    if (!part || *part < 0 || (parts > 1 && *part > 59) || parts > 3)
      return std::nullopt;
    total = total * 60 + *part;
    if (text.empty())
      return parts > 1 ? std::optional(total) : std::nullopt;
    if (!take(text, ":"))
      return std::nullopt;
  }
}

/// "+14d", "-2h30m". Whole days keep the time of day across a change of clocks.
/// Whether the date is in the years 1 to 9999.
bool hasFourDigitYear(Date date) {
  constexpr double firstYear = -62'135'596'800;
  constexpr double afterYear9999 = 253'402'300'800;
  const double seconds = date.unixSeconds();
  return seconds >= firstYear && seconds < afterYear9999;
}

std::optional<Date> relativeDate(std::string_view text, Date now) {
  const double sign = text.front() == '-' ? -1 : 1;
  text.remove_prefix(1);
  auto rest = text;
  const auto count = takeNumber<int>(rest);
  auto unit = rest;
  const auto seconds = takeTimeUnit(unit);
  if (count && seconds && unit.empty() && *seconds >= day && *count <= 1'000'000) {
    const Date date =
        Calendar().addingDays(static_cast<int>(sign * *count * (*seconds / day)), now);
    return hasFourDigitYear(date) ? std::optional(date) : std::nullopt;
  }
  const auto duration = durationFromText(text);
  const Date date = now + sign * duration.value_or(0);
  return duration && hasFourDigitYear(date) ? std::optional(date) : std::nullopt;
}

bool takeTimeOfDay(std::string_view& text, DateComponents& local) {
  const auto hours = takeDigits(text, 2);
  const bool hasColon = take(text, ":");
  const auto minutes = takeDigits(text, 2);
  if (!hours || !hasColon || !minutes || *hours > 23 || *minutes > 59)
    return false;
  local.hour = *hours;
  local.minute = *minutes;
  if (!take(text, ":"))
    return true;
  const auto seconds = takeDigits(text, 2);
  if (!seconds || *seconds > 59)
    return false;
  local.second = *seconds;
  return true;
}

/// "Z" or "+01:00": seconds east of Greenwich.
std::optional<int> zoneOffset(std::string_view text) {
  if (text == "Z" || text == "z")
    return 0;
  const int sign = text.starts_with('-') ? -1 : 1;
  if (!take(text, "-") && !take(text, "+"))
    return std::nullopt;
  const auto hours = takeDigits(text, 2);
  take(text, ":");
  const auto minutes = takeDigits(text, 2);
  if (!hours || !minutes || !text.empty() || *hours > 14 || *minutes > 59)
    return std::nullopt;
  return sign * (*hours * 3600 + *minutes * 60);
}

std::optional<Date> isoDate(std::string_view text) {
  DateComponents local;
  const auto year = takeDigits(text, 4);
  const bool first = take(text, "-");
  const auto month = takeDigits(text, 2);
  const bool second = take(text, "-");
  const auto dayOfMonth = takeDigits(text, 2);
  if (!year || !first || !month || !second || !dayOfMonth || *year < 1)
    return std::nullopt;
  const auto isLeap = (*year % 4 == 0 && *year % 100 != 0) || *year % 400 == 0;
  const std::array days = {31, isLeap ? 29 : 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  if (*month < 1 || *month > 12 || *dayOfMonth < 1 ||
      *dayOfMonth > days[static_cast<std::size_t>(*month - 1)])
    return std::nullopt;
  local.year = *year;
  local.month = *month;
  local.day = *dayOfMonth;
  if (text.empty())
    return Calendar().date(local);
  if ((!take(text, "T") && !take(text, " ")) || !takeTimeOfDay(text, local))
    return std::nullopt;
  if (text.empty())
    return Calendar().date(local);
  const auto offset = zoneOffset(text);
  if (!offset)
    return std::nullopt;
  return Calendar("UTC").date(local) - *offset;
}

} // namespace

std::optional<double> durationFromText(std::string_view text) {
  text = trimmed(text);
  if (text.find(':') != std::string_view::npos)
    return clockDuration(text);
  double total = 0;
  for (bool isFirst = true; !text.empty(); isFirst = false) {
    const auto number = takeNumber<double>(text);
    if (!number || !std::isfinite(*number) || (*number < 0 && !isFirst))
      return std::nullopt;
    text = trimmed(text);
    const auto unit = takeTimeUnit(text);
    if (!unit && !(isFirst && text.empty()))
      return std::nullopt;
    total += *number * unit.value_or(1);
    text = trimmed(text);
    if (text.empty())
      return std::isfinite(total) ? std::optional(total) : std::nullopt;
  }
  return std::nullopt;
}

std::optional<Date> dateFromText(std::string_view text, Date now) {
  text = trimmed(text);
  if (text == "now")
    return now;
  if (text == "today")
    return Calendar().startOfDay(now);
  if (text == "tomorrow")
    return Calendar().startOfDay(Calendar().addingDays(1, now));
  if (text.starts_with('+') || text.starts_with('-'))
    return relativeDate(text, now);
  return isoDate(text);
}

std::string dateText(Date date) {
  // Else the number says more than a date.
  if (!hasFourDigitYear(date))
    return fmt::format("{} s", date.secondsSinceReferenceDate);
  const auto local = Calendar().components(date);
  auto text = fmt::format("{:04}-{:02}-{:02} {:02}:{:02}", local.year, local.month, local.day,
                          local.hour, local.minute);
  return local.second == 0 ? text : text + fmt::format(":{:02}", local.second);
}

std::string durationText(double seconds) {
  if (!(std::abs(seconds) < 1e12) || seconds != std::floor(seconds) || seconds < 0)
    return fmt::format("{} {}", seconds, translation("s"));
  auto rest = static_cast<long long>(seconds);
  std::string text;
  for (const auto& unit : shownUnits) {
    const auto size = static_cast<long long>(unit.seconds);
    if (rest >= size)
      text += fmt::format("{}{} {}", text.empty() ? "" : " ", rest / size, translation(unit.name));
    rest %= size;
  }
  return text.empty() ? fmt::format("0 {}", translation("s")) : text;
}

} // namespace tavrin
