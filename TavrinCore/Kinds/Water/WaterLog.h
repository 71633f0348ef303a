#pragma once

#include "TavrinCore/Base/Calendar.h"
#include "TavrinCore/Base/Coding.h"

#include <array>

namespace tavrin {

struct WaterSettings;

/// What was drunk on one day.
struct WaterDay {
  /// Year, month and day: "2026-03-09".
  std::string day;
  /// Never negative.
  int millilitres = 0;

  static constexpr auto fields() {
    return std::tuple{required("day", &WaterDay::day),
                      required("millilitres", &WaterDay::millilitres)};
  }
  bool operator==(const WaterDay&) const = default;
};

/// The drinking log that all water widgets of a user share. Days are the given calendar's.
struct WaterLog {
  static constexpr std::size_t historyLength = 60;

  /// By day, oldest first.
  std::vector<WaterDay> days;
  /// When something was drunk last.
  std::optional<Date> lastPour;

  static std::string key(Date date, const Calendar& calendar);

  int total(Date date, const Calendar& calendar) const;
  /// A negative amount takes back: a total stops at 0, and the last pour stays.
  void add(int millilitres, Date date, const Calendar& calendar);
  void remove(int millilitres, Date date, const Calendar& calendar);
  void clear(Date date, const Calendar& calendar);
  /// The day of `date` and the six before it, oldest first.
  std::array<WaterDay, 7> week(Date date, const Calendar& calendar) const;

  /// How full the tank is, 0 to 1: filled by a pour, drained one refill interval later, full for
  /// the rest of the day once the goal is reached.
  double tankLevel(Date now, const WaterSettings& settings, const Calendar& calendar) const;
  /// When the tank runs dry; none when it is dry, or the goal is reached.
  std::optional<Date> nextGlass(Date now, const WaterSettings& settings,
                                const Calendar& calendar) const;

  /// In order, one entry a day, no negative totals: what a file written elsewhere may lack.
  void tidy();

  static constexpr auto fields() {
    return std::tuple{required("days", &WaterLog::days), optional("lastPour", &WaterLog::lastPour)};
  }
  bool operator==(const WaterLog&) const = default;
};

/// What is read is tidy.
template <> struct Coder<WaterLog> : RecordCoder<WaterLog> {
  static WaterLog decode(const JSONValue& json) {
    auto log = RecordCoder<WaterLog>::decode(json);
    log.tidy();
    return log;
  }
};

} // namespace tavrin
