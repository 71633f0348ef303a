#include "TavrinCore/Base/TimeZone.h"

#include "TavrinCore/Base/Calendar.h"

#include <cstdio>
#include <cstdlib>
#include <fmt/format.h>
#include <gtest/gtest.h>
#include <memory>

namespace tavrin {
namespace {

class Environment {
public:
  explicit Environment(const char* zone) : before_(std::getenv("TZ")) {
    setenv("TZ", zone, 1);
    tzset();
  }
  ~Environment() {
    setenv("TZ", before_.c_str(), 1);
    tzset();
  }
  Environment(const Environment&) = delete;

private:
  std::string before_;
};

/// Every zone that the system has, at each of its changes, beside another reader of the same files.
TEST(TimeZone, FollowsTheSystemsFiles) {
  const std::unique_ptr<FILE, int (*)(FILE*)> reference(
      ::popen("/usr/bin/python3 " TAVRIN_TESTS_FOLDER "/Core/zone_reference.py", "r"), ::pclose);
  ASSERT_NE(reference, nullptr);
  char name[80], day[16], time[16];
  long long second = 0, start = 0;
  int checked = 0, different = 0;
  std::string current;
  Calendar calendar;
  while (std::fscanf(reference.get(), "%79s %lld %15s %15s %lld", name, &second, day, time,
                     &start) == 5) {
    if (current != name) {
      current = name;
      ASSERT_TRUE(Calendar::isKnownTimeZone(current)) << current;
      calendar = Calendar(current, "en_GB");
    }
    const Date moment = Date::fromUnixSeconds(static_cast<double>(second));
    const auto wall = calendar.components(moment);
    const auto said = fmt::format("{:04}-{:02}-{:02} {:02}:{:02}:{:02}", wall.year, wall.month,
                                  wall.day, wall.hour, wall.minute, wall.second);
    const auto expected = fmt::format("{} {}", day, time);
    const bool agrees =
        said == expected && calendar.text(moment, "yyyy-MM-dd HH:mm:ss") == expected &&
        calendar.startOfDay(moment) == Date::fromUnixSeconds(static_cast<double>(start));
    ++checked;
    if (!agrees && ++different < 10)
      ADD_FAILURE() << name << " " << second << ": " << said << ", not " << expected << "; day from "
                    << calendar.startOfDay(moment).unixSeconds() << ", not " << start;
  }
  EXPECT_EQ(different, 0);
  EXPECT_GT(checked, 50'000);
}

/// TZ in each of its forms.
TEST(TimeZone, TakesWhatTheEnvironmentSays) {
  const Date summer = Date::fromUnixSeconds(1'784'116'800); // 2026-07-15 12:00 UTC
  const struct {
    const char* variable;
    const char* id;
    int hour;
  } cases[] = {
      {"Asia/Tokyo", "Asia/Tokyo", 21},
      {":Asia/Tokyo", "Asia/Tokyo", 21},
      {"/usr/share/zoneinfo/Asia/Tokyo", "Asia/Tokyo", 21},
      {":/usr/share/zoneinfo/Asia/Tokyo", "Asia/Tokyo", 21},
      {"CET-1CEST,M3.5.0,M10.5.0/3", "CET-1CEST,M3.5.0,M10.5.0/3", 14},
      {"<+0545>-5:45", "<+0545>-5:45", 17},
      {"", "UTC", 12},
      {"Mars/Olympus", "UTC", 12},
  };
  for (const auto& [variable, id, hour] : cases) {
    const Environment environment(variable);
    const Calendar calendar({}, "en_GB");
    EXPECT_EQ(calendar.timeZoneID(), id) << variable;
    EXPECT_EQ(calendar.components(summer).hour, hour) << variable;
    EXPECT_EQ(calendar.components(calendar.startOfDay(summer)).hour, 0) << variable;
  }
}

/// A rule and a file of the same zone agree on each hour of its changes.
TEST(TimeZone, ReadsARuleAsItsFile) {
  const Environment environment("CET-1CEST,M3.5.0,M10.5.0/3");
  const Calendar rule({}, "en_GB"), file("Europe/Berlin", "en_GB");
  for (const auto& [month, day] : {std::pair(3, 29), {10, 25}, {7, 1}})
    for (int minute = 0; minute < 24 * 60; minute += 15)
      EXPECT_EQ(rule.date({2026, month, day, 0, minute}), file.date({2026, month, day, 0, minute}))
          << month << " " << minute;
}

/// An identifier comes out of a settings file.
TEST(TimeZone, OpensNothingButZones) {
  for (const auto* id :
       {"", "/usr/share/zoneinfo/Asia/Tokyo", "../zoneinfo/Asia/Tokyo", "/dev/zero",
        "file:/usr/share/zoneinfo/Asia/Tokyo", "libc:localtime", "Asia", "Asia/", "Asia/Tokyo/",
        "Europe/Berlin ", "CET-1CEST,M3.5.0,M10.5.0/3"})
    EXPECT_FALSE(Calendar::isKnownTimeZone(id)) << id;
  EXPECT_FALSE(Calendar::isKnownTimeZone(std::string(100'000, 'a')));
}

} // namespace
} // namespace tavrin
