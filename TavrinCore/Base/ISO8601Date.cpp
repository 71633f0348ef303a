#include "TavrinCore/Base/ISO8601Date.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <fmt/format.h>

namespace tavrin {
namespace {

using namespace std::chrono;

/// Reads digits off the front of a text.
class Reader {
public:
  explicit Reader(std::string_view text) : text_(text) {}

  int number(std::size_t digits) {
    if (text_.size() < digits || !isGood_)
      return fail();
    int value = 0;
    for (const char c : text_.substr(0, digits)) {
      if (c < '0' || c > '9')
        return fail();
      value = value * 10 + (c - '0');
    }
    text_.remove_prefix(digits);
    return value;
  }
  void expect(char c) {
    if (!accepts(c))
      fail();
  }
  bool accepts(char c) {
    if (text_.empty() || text_.front() != c)
      return false;
    text_.remove_prefix(1);
    return true;
  }
  double fraction() {
    double value = 0;
    double weight = 0.1;
    for (; !text_.empty() && text_.front() >= '0' && text_.front() <= '9'; weight /= 10) {
      value += weight * (text_.front() - '0');
      text_.remove_prefix(1);
    }
    return value;
  }
  bool isDone() const { return isGood_ && text_.empty(); }

private:
  int fail() {
    isGood_ = false;
    return 0;
  }
  std::string_view text_;
  bool isGood_ = true;
};

/// Seconds east of UTC.
int readZone(Reader& reader) {
  if (reader.accepts('Z'))
    return 0;
  const bool isWest = reader.accepts('-');
  if (!isWest)
    reader.expect('+');
  const int hour = reader.number(2);
  reader.accepts(':');
  const int offset = (hour * 60 + reader.number(2)) * 60;
  return isWest ? -offset : offset;
}

} // namespace

std::string ISO8601Date::text() const {
  constexpr double first = -62'167'219'200;
  constexpr double last = 253'402'300'799;
  const double unixSeconds = date.unixSeconds();
  const double bounded = std::isfinite(unixSeconds) ? std::clamp(unixSeconds, first, last) : 0;
  const sys_seconds moment{seconds{static_cast<std::int64_t>(std::floor(bounded))}};
  const auto day = floor<days>(moment);
  const year_month_day ymd{day};
  const hh_mm_ss time{moment - day};
  return fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}Z", static_cast<int>(ymd.year()),
                     static_cast<unsigned>(ymd.month()), static_cast<unsigned>(ymd.day()),
                     time.hours().count(), time.minutes().count(), time.seconds().count());
}

std::optional<ISO8601Date> ISO8601Date::parse(std::string_view text) {
  Reader reader(text);
  const int y = reader.number(4);
  reader.expect('-');
  const int m = reader.number(2);
  reader.expect('-');
  const int d = reader.number(2);
  reader.expect('T');
  const int hour = reader.number(2);
  reader.expect(':');
  const int minute = reader.number(2);
  reader.expect(':');
  const int second = reader.number(2);
  const double fraction = reader.accepts('.') ? reader.fraction() : 0;
  const int zone = readZone(reader);
  const year_month_day ymd{year{y}, month{static_cast<unsigned>(m)},
                           std::chrono::day{static_cast<unsigned>(d)}};
  if (!reader.isDone() || !ymd.ok() || hour > 23 || minute > 59 || second > 60)
    return std::nullopt;
  const auto days = sys_days{ymd}.time_since_epoch().count();
  const double whole =
      static_cast<double>(days) * 86400 + hour * 3600 + minute * 60 + second - zone;
  return ISO8601Date{Date::fromUnixSeconds(whole + fraction)};
}

ISO8601Date Coder<ISO8601Date>::decode(const JSONValue& json) {
  const auto date = ISO8601Date::parse(Coder<std::string>::decode(json));
  if (!date)
    detail::throwWrongType("a date such as \"2026-03-09T12:30:00Z\"");
  return *date;
}

} // namespace tavrin
