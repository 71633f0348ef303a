#pragma once

#include "TavrinCore/Base/Date.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace tavrin {

struct DateInterval {
  Date start;
  /// The first moment after it.
  Date end;

  double duration() const { return end.since(start); }
  bool contains(Date date) const { return start <= date && date < end; }
  bool operator==(const DateInterval&) const = default;
};

/// A moment on the Gregorian calendar, in the calendar's time zone.
struct DateComponents {
  int year = 0;
  /// 1 to 12.
  int month = 1;
  /// 1 to 31.
  int day = 1;
  int hour = 0;
  int minute = 0;
  int second = 0;
  /// 1 (Sunday) to 7.
  int weekday = 1;
  bool operator==(const DateComponents&) const = default;
};

enum class CalendarUnit { day, week, month, year };

/// Days, weeks and dates as a user counts them: a time zone, and a locale for the week's first day
/// and for texts. A value: copies are independent and may go to other threads; one object is for
/// one thread. What it needs of ICU is made at the first use and kept.
class Calendar {
public:
  /// Empty identifiers stand for the system's zone and the user's locale for times (LC_TIME) as
  /// they are now; an unknown zone becomes the system's.
  explicit Calendar(std::string timeZoneID = {}, std::string localeID = {});
  Calendar(const Calendar& other);
  Calendar(Calendar&& other) noexcept;
  Calendar& operator=(const Calendar& other);
  Calendar& operator=(Calendar&& other) noexcept;
  ~Calendar();

  static bool isKnownTimeZone(const std::string& timeZoneID);

  /// The same locale in another zone.
  Calendar inTimeZone(const std::string& timeZoneID) const;

  /// The zone that is in effect, as an identifier such as Europe/Berlin.
  const std::string& timeZoneID() const { return timeZoneID_; }
  const std::string& localeID() const { return localeID_; }

  /// The unit that holds `date`, 23 to 25 hours for a day on which clocks change. No value for a
  /// date beyond the calendar's reach.
  std::optional<DateInterval> dateInterval(CalendarUnit unit, Date date) const;
  bool isSameDay(Date first, Date second) const;
  Date startOfDay(Date date) const;
  /// The same time of day `days` later, or the nearest that exists.
  Date addingDays(int days, Date date) const;

  DateComponents components(Date date) const;
  /// `weekday` is not looked at.
  Date date(const DateComponents& components) const;

  /// By an ICU date pattern such as "HH:mm:ss" or "EEEE".
  std::string text(Date date, std::string_view pattern) const;
  /// By an ICU skeleton such as "MMMd": the locale puts the fields in its own order. The first
  /// time of each skeleton takes a hundred times as long as the other texts here.
  std::string localText(Date date, std::string_view skeleton) const;
  /// In the locale's abbreviated date and shortened time styles.
  std::string dateAndTime(Date date) const;
  /// "14:30", "2:30 PM": in the locale's short style.
  std::string timeOfDay(Date date) const;
  /// "Wednesday, 9 September 2026": in the locale's full style.
  std::string fullDate(Date date) const;
  /// Whether the locale's hours go from 0 to 23.
  bool uses24HourClock() const;

  bool operator==(const Calendar& other) const {
    return timeZoneID_ == other.timeZoneID_ && localeID_ == other.localeID_;
  }

private:
  struct Engine;
  Engine& engine() const;

  std::string timeZoneID_;
  std::string localeID_;
  mutable std::unique_ptr<Engine> engine_;
};

} // namespace tavrin
