#include "TavrinCore/Base/ISO8601.h"

#include "TavrinCore/Text/Numbers.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <fmt/format.h>

namespace tavrin {
namespace {

/// Takes what it reads off the front of a text.
class Reader {
public:
  explicit Reader(std::string_view text) : rest_(text) {}

  bool isAtEnd() const { return rest_.empty(); }
  bool skip(char expected) {
    if (rest_.empty() || rest_.front() != expected)
      return false;
    rest_.remove_prefix(1);
    return true;
  }
  /// Exactly `count` digits with a value up to `maximum`.
  std::optional<int> number(std::size_t count, int maximum) {
    const auto value = takeDigits(rest_, count);
    return value && *value <= maximum ? value : std::nullopt;
  }
  /// The digits after a decimal point, at least one.
  std::optional<double> fraction() {
    double value = 0;
    double scale = 0.1;
    std::size_t count = 0;
    for (; count < rest_.size() && isDigit(rest_[count]); ++count, scale /= 10)
      value += scale * (rest_[count] - '0');
    rest_.remove_prefix(count);
    return count > 0 ? std::optional(value) : std::nullopt;
  }

private:
  static bool isDigit(char character) { return character >= '0' && character <= '9'; }

  std::string_view rest_;
};

/// Seconds east of UTC.
std::optional<int> zone(Reader& reader) {
  if (reader.skip('Z') || reader.skip('z'))
    return 0;
  const int sign = reader.skip('+') ? 1 : reader.skip('-') ? -1 : 0;
  if (sign == 0)
    return std::nullopt;
  const auto hours = reader.number(2, 23);
  reader.skip(':');
  const auto minutes = reader.number(2, 59);
  if (!hours || !minutes)
    return std::nullopt;
  return sign * (*hours * 3600 + *minutes * 60);
}

std::optional<std::chrono::sys_days> day(Reader& reader) {
  using namespace std::chrono;
  const auto years = reader.number(4, 9999);
  if (!years || !reader.skip('-'))
    return std::nullopt;
  const auto months = reader.number(2, 12);
  if (!months || !reader.skip('-'))
    return std::nullopt;
  const auto days = reader.number(2, 31);
  if (!days)
    return std::nullopt;
  const year_month_day date{year(*years), month(static_cast<unsigned>(*months)),
                            std::chrono::day(static_cast<unsigned>(*days))};
  return date.ok() ? std::optional(sys_days(date)) : std::nullopt;
}

struct UTCMoment {
  std::chrono::year_month_day day;
  std::chrono::hh_mm_ss<std::chrono::milliseconds> time;
};

UTCMoment utcMoment(Date date) {
  using namespace std::chrono;
  // The years 0 to 9999; whatever is beyond has no four digits.
  constexpr double first = -62'167'219'200e3;
  constexpr double last = 253'402'300'799'999.0;
  const double total = date.unixSeconds() * 1000;
  // A millisecond that was read is not to become the one before it.
  const double bounded = std::isnan(total) ? 0 : std::clamp(std::floor(total + 1e-3), first, last);
  const sys_time<milliseconds> moment(milliseconds(static_cast<std::int64_t>(bounded)));
  const auto midnight = floor<days>(moment);
  return {midnight, hh_mm_ss(moment - midnight)};
}

} // namespace

std::optional<Date> dateFromISO8601(std::string_view text) {
  Reader reader(text);
  const auto date = day(reader);
  if (!date || !(reader.skip('T') || reader.skip('t') || reader.skip(' ')))
    return std::nullopt;
  const auto hours = reader.number(2, 23);
  if (!hours || !reader.skip(':'))
    return std::nullopt;
  const auto minutes = reader.number(2, 59);
  if (!minutes || !reader.skip(':'))
    return std::nullopt;
  const auto seconds = reader.number(2, 60);
  if (!seconds)
    return std::nullopt;
  double fraction = 0;
  if (reader.skip('.')) {
    const auto digits = reader.fraction();
    if (!digits)
      return std::nullopt;
    fraction = *digits;
  }
  const auto offset = zone(reader);
  if (!offset || !reader.isAtEnd())
    return std::nullopt;
  const auto whole = date->time_since_epoch().count() * 86'400L + *hours * 3600 + *minutes * 60 +
                     *seconds - *offset;
  return Date::fromUnixSeconds(static_cast<double>(whole) + fraction);
}

std::string iso8601(Date date) {
  const auto [ymd, time] = utcMoment(date);
  return fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}Z", static_cast<int>(ymd.year()),
                     static_cast<unsigned>(ymd.month()), static_cast<unsigned>(ymd.day()),
                     time.hours().count(), time.minutes().count(), time.seconds().count());
}

std::string iso8601WithMilliseconds(Date date) {
  auto text = iso8601(date);
  text.pop_back();
  return fmt::format("{}.{:03}Z", text, utcMoment(date).time.subseconds().count());
}

} // namespace tavrin
