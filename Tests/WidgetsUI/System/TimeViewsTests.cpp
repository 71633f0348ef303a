#include "TavrinCore/Kinds/System/ClockSettings.h"
#include "TavrinCore/Kinds/System/CountdownSettings.h"
#include "TavrinCore/Kinds/System/TimeProgressSettings.h"
#include "TavrinWidgetsUI/Kit/Views/ViewRenderer.h"
#include "TavrinWidgetsUI/System/ClockViews.h"
#include "TavrinWidgetsUI/System/CountdownViews.h"
#include "TavrinWidgetsUI/System/TimeProgressViews.h"
#include "Tests/Kit/Pixels.h"
#include "Tests/Kit/Spoken.h"
#include "Tests/Support/DrawnLines.h"
#include "Tests/Support/InLanguage.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

namespace tavrin::test {
namespace {

/// Wednesday, 9 September 2026, 15:07:09 in Berlin.
constexpr Date afternoon = Date::fromUnixSeconds(1'788'959'229);

ClockReading reading(std::optional<std::string> zone, std::optional<bool> uses24Hour = {},
                     bool showsSeconds = false, const char* locale = "en_US") {
  ClockSettings settings;
  settings.timeZoneID = std::move(zone);
  settings.uses24Hour = uses24Hour;
  settings.showsSeconds = showsSeconds;
  return ClockReader(settings, Calendar("Europe/Berlin", locale)).at(afternoon);
}

TEST(ClockReading, TellsTimeAsTheSettingsAndTheLocaleSay) {
  EXPECT_EQ(reading({}).time, "3:07");
  EXPECT_EQ(reading({}, {}, false, "de_DE").time, "15:07");
  EXPECT_EQ(reading({}, true).time, "15:07");
  EXPECT_EQ(reading({}, false, true, "de_DE").time, "3:07:09");
  EXPECT_EQ(reading({}, true, true).seconds, "09");
  EXPECT_EQ(reading({}, true, true).hoursAndMinutes, "15:07");
  EXPECT_EQ(reading({}).weekday, "Wednesday");
  EXPECT_EQ(reading({}, {}, false, "de_DE").longDay, "Mittwoch, 9. September");
  EXPECT_EQ(reading({}, {}, false, "de_DE").date, "9. September 2026");
}

TEST(ClockReading, GoesByTheLocaleForTimes) {
  const std::string all = std::getenv("LC_ALL") ? std::getenv("LC_ALL") : "";
  ::unsetenv("LC_ALL");
  ::setenv("LANG", "en_US.UTF-8", 1);
  ::setenv("LC_TIME", "de_DE.UTF-8", 1);
  EXPECT_EQ(ClockReader({}, Calendar("Europe/Berlin")).at(afternoon).time, "15:07");
  ::unsetenv("LC_TIME");
  EXPECT_EQ(ClockReader({}, Calendar("Europe/Berlin")).at(afternoon).time, "3:07");
  ::unsetenv("LANG");
  ::setenv("LC_ALL", all.c_str(), 1);
}

TEST(ClockReading, TellsWhereAnotherZoneIs) {
  struct Case {
    const char* zone;
    const char* city;
    const char* difference;
  };
  const Case cases[] = {
      {"Pacific/Auckland", "Auckland", "Tomorrow, 10 h ahead"},
      {"America/Argentina/Buenos_Aires", "Buenos Aires", "Today, 5 h behind"},
      {"Asia/Kathmandu", "Kathmandu", "Today, 3 h 45 min ahead"},
      {"Pacific/Pago_Pago", "Pago Pago", "Today, 13 h behind"},
      {"Europe/Paris", "Paris", "Today, same time"},
      {"UTC", "UTC", "Today, 2 h behind"},
  };
  for (const auto& [zone, city, difference] : cases) {
    const auto other = reading(zone).otherZone;
    ASSERT_TRUE(other) << zone;
    EXPECT_EQ(other->city, city);
    EXPECT_EQ(other->difference, difference) << zone;
  }
}

TEST(ClockReading, NamesTheCityInTheUsersLanguage) {
  const InLanguage german({{"Play", "Abspielen"}}, "de");
  EXPECT_EQ(reading("Africa/Cairo").otherZone->city, "Kairo");
  EXPECT_EQ(reading("Asia/Tokyo").otherZone->city, "Tokio");
}

TEST(ClockReading, AnUnknownZoneIsTheSystems) {
  const auto unknown = reading("Nowhere/Invalid");
  EXPECT_EQ(unknown.time, reading({}).time);
  EXPECT_FALSE(unknown.otherZone);
  EXPECT_FALSE(reading("Europe/Berlin").otherZone);
}

TEST(CountdownForms, SayDaysAndHoursOrAClock) {
  using Forms = std::vector<std::string>;
  EXPECT_EQ(countdownForms(3652 * 86'400LL + 5000), (Forms{"3652d 1h", "3652d", "10y"}));
  EXPECT_EQ(countdownForms(3 * 86'400 + 4 * 3600 + 10), (Forms{"3d 4h", "3d"}));
  EXPECT_EQ(countdownForms(86'400), (Forms{"1d 0h", "1d"}));
  EXPECT_EQ(countdownForms(86'399), Forms{"23:59:59"});
  EXPECT_EQ(countdownForms(59), Forms{"0:59"});
  EXPECT_EQ(countdownForms(0), Forms{"0:00"});
}

TEST(CountdownTiles, ShrinkTheirLastFormIntoTheTile) {
  const InLanguage wordy({{"{years}y", "{years} Jahre"}}, "de");
  const CountdownSettings settings{afternoon + 3652 * 86'400.0, false};
  for (const double side : {48.0, 64.0, 128.0})
    for (const int span : {1, 2, 3}) {
      const TileSize size{side, span};
      const auto lines = linesOf(span > 1 ? countdownWideTile("Launch", settings, afternoon, size)
                                          : countdownTileIcon("Launch", settings, afternoon, size),
                                 size);
      ASSERT_FALSE(lines.empty());
      for (const auto& line : lines) {
        const QRectF body = size.bodyRect();
        const QRectF ink = line.ink.boundingRect();
        EXPECT_GE(ink.left() / drawnScale, body.left()) << line.string.toStdString() << side;
        EXPECT_LE(ink.right() / drawnScale, body.right()) << line.string.toStdString() << side;
        EXPECT_GE(line.pointSize, minimumCaptionSize - 0.01);
      }
    }
}

TEST(TimeProgressReading, SaysWhatIsLeft) {
  const Calendar berlin("Europe/Berlin", "de_DE");
  const auto left = [&](TimeProgressScope scope) {
    return TimeProgressReading::at(afternoon, scope, berlin).left;
  };
  EXPECT_EQ(left(TimeProgressScope::day), "8 h 53 min");
  EXPECT_EQ(left(TimeProgressScope::week), "4 days 9 h");
  EXPECT_EQ(left(TimeProgressScope::month), "21 days");
  EXPECT_EQ(left(TimeProgressScope::year), "113 days");
}

/// As much of the ring has the ink of the word "left" as the number says.
TEST(TimeProgressRing, AgreesWithItsNumber) {
  const Calendar berlin("Europe/Berlin", "en_US");
  constexpr double side = 200;
  constexpr double radius = side / 2 - 0.085 * side / 2;
  constexpr int places = 720;
  for (const auto scope : allTimeProgressScopes) {
    const auto reading = TimeProgressReading::at(afternoon, scope, berlin);
    const auto image = rendered(
        timeProgressRing(reading, side, palette::white, palette::black, Qt::gray), {side, side});
    int left = 0;
    for (int i = 0; i < places; ++i) {
      const double angle = 2 * std::numbers::pi * i / places;
      const QPointF place(side / 2 + radius * std::sin(angle), side / 2 - radius * std::cos(angle));
      left += isNear(image.pixelColor(place.toPoint()), Qt::gray) ? 1 : 0;
    }
    // The round ends of the other part reach into it.
    EXPECT_NEAR(100.0 * left / places, reading.percentLeft, 4);
  }
}

TEST(TimeTiles, AreOneElementWithItsWholeReading) {
  const CountdownSettings launch{afternoon + 3 * 86'400.0 + 7300, true};
  const Calendar berlin("Europe/Berlin", "en_US");
  const auto day = TimeProgressReading::at(afternoon, TimeProgressScope::day, berlin);
  for (const int span : {1, 3}) {
    const TileSize size{48, span};
    const bool wide = span > 1;
    const auto clock = reading("Asia/Tokyo");
    EXPECT_EQ(spoken(wide ? clockWideTile(clock, size) : clockTileIcon(clock, size), size),
              std::pair(QString("Clock"), QString("10:07, Wednesday, Tokyo")));
    EXPECT_EQ(spoken(wide ? countdownWideTile("Launch", launch, afternoon, size)
                          : countdownTileIcon("Launch", launch, afternoon, size),
                     size),
              std::pair(QString("Launch"), QString("3d 2h left")));
    const Date later = afternoon + 5 * 86'400.0 + 7300;
    EXPECT_EQ(spoken(wide ? countdownWideTile("Launch", launch, later, size)
                          : countdownTileIcon("Launch", launch, later, size),
                     size),
              std::pair(QString("since Launch"), QString("2d 0h")));
    EXPECT_EQ(
        spoken(wide ? timeProgressWideTile(day, size) : timeProgressTileIcon(day, size), size),
        std::pair(QString("Day"), QString("37% left")));
  }
}

TEST(TimeTiles, AFaceThatDidNotMoveIsNotPaintedAgain) {
  ClockSettings settings;
  settings.isAnalog = true;
  const ClockReader reader(settings, Calendar("Europe/Berlin", "en_US"));
  const TileSize size{64, 1};
  ViewRenderer renderer;
  EXPECT_TRUE(renderer.render(clockTileIcon(reader.at(afternoon), size), {64, 64}, 2));
  EXPECT_FALSE(renderer.render(clockTileIcon(reader.at(afternoon + 5), size), {64, 64}, 2));
  EXPECT_TRUE(renderer.render(clockTileIcon(reader.at(afternoon + 6), size), {64, 64}, 2));
}

} // namespace
} // namespace tavrin::test
