#include "TavrinStorage/Timestamp.h"

#include "TavrinCore/Text/Numbers.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <fmt/format.h>

namespace tavrin {
namespace {

struct Moment {
  std::chrono::year_month_day day;
  int milliseconds;
};

Moment momentOf(Date date) {
  // The years 0 to 9999; whatever is beyond has no four digits.
  const double total =
      std::clamp(std::floor(date.unixSeconds() * 1000 + 1e-3), -62167219200e3, 253402300799999.0);
  const double days = std::floor(total / 86400e3);
  return {std::chrono::sys_days(std::chrono::days(static_cast<int>(days))),
          static_cast<int>(total - days * 86400e3)};
}

/// A number of exactly `digits` digits and `after` off the front of `text`.
std::optional<int> take(std::string_view& text, std::size_t digits, std::string_view after) {
  int number = 0;
  const auto head = text.substr(0, digits);
  if (head.size() != digits || head.find_first_not_of("0123456789") != std::string_view::npos ||
      !text.substr(digits).starts_with(after))
    return std::nullopt;
  std::from_chars(head.data(), head.data() + digits, number);
  text.remove_prefix(digits + after.size());
  return number;
}

} // namespace

std::string iso8601(Date date) {
  const auto [day, milliseconds] = momentOf(date);
  return fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}Z", int(day.year()), unsigned(day.month()),
                     unsigned(day.day()), milliseconds / 3600000, milliseconds / 60000 % 60,
                     milliseconds / 1000 % 60);
}

std::string fileStamp(Date date) {
  auto text = iso8601(date);
  std::replace(text.begin(), text.end(), ':', '-');
  text.pop_back();
  return fmt::format("{}.{:03}Z", text, momentOf(date).milliseconds % 1000);
}

std::optional<Date> dateFromISO8601(std::string_view text) {
  const auto year = take(text, 4, "-");
  const auto month = year ? take(text, 2, "-") : std::nullopt;
  const auto day = month ? take(text, 2, "T") : std::nullopt;
  const auto hour = day ? take(text, 2, ":") : std::nullopt;
  const auto minute = hour ? take(text, 2, ":") : std::nullopt;
  const auto second = minute ? take(text, 2, "") : std::nullopt;
  if (!second)
    return std::nullopt;
  double fraction = 0;
  if (text.starts_with('.')) {
    const auto end = text.find('Z');
    if (end == std::string_view::npos || end < 2 || end > 10 ||
        text.substr(1, end - 1).find_first_not_of("0123456789") != std::string_view::npos)
      return std::nullopt;
    doubleFromChars(text.data(), text.data() + end, fraction);
    text.remove_prefix(end);
  }
  const std::chrono::year_month_day date{std::chrono::year(*year),
                                         std::chrono::month(static_cast<unsigned>(*month)),
                                         std::chrono::day(static_cast<unsigned>(*day))};
  if (text != "Z" || !date.ok() || *hour > 23 || *minute > 59 || *second > 60)
    return std::nullopt;
  const auto days = std::chrono::sys_days(date).time_since_epoch().count();
  return Date::fromUnixSeconds(double(days) * 86400 + *hour * 3600 + *minute * 60 + *second +
                               fraction);
}

} // namespace tavrin
