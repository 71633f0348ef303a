#include "TavrinSettings/Samples/SampleValues.h"

#include "TavrinCore/Base/ISO8601.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinWidgetsUI/Kit/Views/ViewRenderer.h"

#include <QPainter>

namespace tavrin::samples {
namespace {

constexpr double hour = 3600;
constexpr double day = 86'400;

GitHubItem item(int number, const char* title, GitHubChecks checks, Date updatedAt,
                bool isIssue = false, bool isDraft = false,
                const char* repository = "quellby/tavrin") {
  return {number, title,   repository, "https://github.com/" + std::to_string(number),
          checks, isDraft, isIssue,    updatedAt};
}

} // namespace

std::vector<CalendarEvent> events(Date now, const Calendar& calendar) {
  const Date today = calendar.startOfDay(now);
  return {
      {"1", translated("Design review"), now + 12 * 60, now + 72 * 60, false, translated("Room 4"),
       "#3584e4"},
      {"2", translated("Lunch with Ada"), now + 3 * hour, now + 4 * hour, false, {}, "#33d17a"},
      {"3", translated("Quarterly planning"), now + 6 * hour, now + 7 * hour, false, "Hamburg",
       "#ff7800"},
      {"4", translated("Grandmother's birthday"), today, today + day, true, {}, "#c061cb"},
      {"5", translated("Flight"), now + 26 * hour, now + 40 * hour, false, "BER", "#3584e4"},
      {"6", translated("Holiday"), today + 3 * day, today + 10 * day, true, {}, "#f6d32d"},
  };
}

std::vector<Reminder> reminders(Date now, const Calendar& calendar) {
  const Date today = calendar.startOfDay(now);
  return {
      {"1", "l", translated("Pay the rent"), today - day, true, false, {}, 0},
      {"2", "l", translated("Call Ada"), now + hour, false, false, {}, 1},
      {"3", "l", translated("Water the plants"), today, true, false, {}, 0},
      {"5", "l", translated("Read the report"), {}, false, false, {}, 0},
      {"6", "l", translated("Buy milk"), today, true, true, now, 0},
  };
}

WeatherReading weather(double temperature, WeatherCondition condition, bool isDay, Date now,
                       const std::string& timeZoneID) {
  using enum WeatherCondition;
  WeatherReading reading;
  reading.temperature = temperature;
  reading.apparent = temperature - 2.4;
  reading.condition = condition;
  reading.isDay = isDay;
  reading.readAt = now - 340;
  reading.timeZoneID = timeZoneID;
  const Calendar calendar(timeZoneID, "en_GB");
  const WeatherCondition next[] = {condition, partlyCloudy, rain, thunderstorm, snow};
  for (int i = 0; i < WeatherService::forecastDays; ++i)
    reading.days.push_back({calendar.startOfDay(calendar.addingDays(i, now)),
                            temperature + 2 - i * 3, temperature - 8 - i, next[i]});
  return reading;
}

std::vector<GitHubItem> gitHubItems(Date now) {
  return {
      item(412, "Tiles keep their contrast on a light ground", GitHubChecks::failing, now - 300),
      item(7, "Fix: the reader loses a half-written last line when a log is rotated while it reads",
           GitHubChecks::failing, now - 7300),
      item(98765, "Größere Schrift", GitHubChecks::running, now - 20, false, true,
           "a-very-long-organisation-name/an-even-longer-repository-name"),
      item(3, "One idea, one place", GitHubChecks::passing, now - 12 * day),
      item(41, "Crash on exit", GitHubChecks::none, now - 5 * hour, true),
      item(44, "Docs", GitHubChecks::none, now - day)};
}

GitHubContributions contributions(Date now, bool isQuiet) {
  std::vector<GitHubContributionDay> days;
  int total = 0;
  for (int i = 0; i < 53 * 7 - 3; ++i) {
    const Date date = now - (53 * 7 - 4 - i) * day;
    const int count = isQuiet || (i * 7919) % 5 < 2 ? 0 : (i * i * 31) % 13;
    total += count;
    days.push_back({iso8601(date).substr(0, 10), count});
  }
  return GitHubContributions(std::move(days), total);
}

WaterLog water(int millilitres, double minutesAgo, Date now, const Calendar& calendar) {
  WaterLog log;
  const int history[] = {1500, 2250, 0, 2000, 750, 1800};
  for (int i = 0; i < 6; ++i)
    log.add(history[i], calendar.addingDays(i - 6, now), calendar);
  if (millilitres > 0)
    log.add(millilitres, now - minutesAgo * 60, calendar);
  return log;
}

ColourHistory colours(std::initializer_list<int> values) {
  ColourHistory history;
  for (const int value : values) {
    PickedColour colour;
    colour.id = UUID::random();
    colour.red = value >> 16;
    colour.green = value >> 8 & 255;
    colour.blue = value & 255;
    history.colours.push_back(colour);
  }
  return history;
}

const std::vector<Emoji>& emoji() {
  static const std::vector<Emoji> made{{"🦊", ""},
                                       {"👋", "👋🏻"},
                                       {"🧑‍🚀", "🧑🏻‍🚀"},
                                       {"🇩🇪", ""},
                                       {"🥨", ""},
                                       {"❤️‍🔥", ""},
                                       {"🏳️‍🌈", ""},
                                       {"🧑‍🤝‍🧑", "🧑🏻‍🤝‍🧑🏻"},
                                       {"🎸", ""},
                                       {"⚽", ""},
                                       {"🚲", ""}};
  return made;
}

MediaPlayer player(PlaybackStatus status, const std::string& title, const std::string& artist,
                   Date now, double length, double position) {
  MediaPlayer made;
  made.name = "player";
  made.title = "Music Player";
  made.playback.status = status;
  made.playback.track = {title, artist, "Harbours", {}, "/track/1", {}};
  if (length > 0)
    made.playback.track.length = length;
  made.playback.position = position;
  made.playback.positionDate = now;
  made.volume = 0.6;
  made.canPlay = made.canPause = made.canGoNext = made.canGoPrevious = made.canSeek = true;
  return made;
}

const QImage& cover(bool isLight) {
  static const auto draw = [](const QColor& top, const QColor& bottom, const QColor& mark) {
    const AnyView picture = zstack(
        {rectangle().gradient(top, bottom), circle().stroke(mark, 14).padding(40),
         circle().fill(mark).padding(100), circle().fill(mark).frame(70, 70).offset(90, -95)});
    ViewRenderer renderer;
    renderer.render(picture, QSizeF(320, 320), 1);
    return renderer.image().copy();
  };
  static const QImage dark = draw({0x1F, 0x4E, 0x79}, {0x0B, 0x16, 0x2B}, {0xF2, 0xC1, 0x4E});
  static const QImage light = draw({0xFF, 0xF4, 0xE0}, {0xF6, 0xD9, 0xC0}, {0xD1, 0x49, 0x5B});
  return isLight ? light : dark;
}

QImage screen(int variety, QSize size) {
  QImage picture(size, QImage::Format_RGB32);
  QPainter painter(&picture);
  const auto hue = [&](int offset) {
    return QColor::fromHsv((variety * 67 + offset) % 360, 150, 190);
  };
  QLinearGradient ground(0, 0, size.width(), size.height());
  ground.setColorAt(0, hue(0));
  ground.setColorAt(1, hue(80));
  painter.fillRect(picture.rect(), ground);
  painter.fillRect(0, 0, size.width(), 28, QColor(20, 20, 24));
  for (int i = 0; i <= variety % 2; ++i) {
    const QRect window(120 + 260 * i, 110 + 130 * i, size.width() / 2, size.height() / 2);
    painter.fillRect(window, variety % 3 == 0 ? QColor(30, 32, 38) : QColor(250, 250, 250));
    painter.fillRect(window.left(), window.top(), window.width(), 34, QColor(208, 212, 218));
    for (int line = 0; line < 9; ++line)
      painter.fillRect(window.left() + 24, window.top() + 60 + line * 32,
                       (window.width() - 60) * ((line * 37 + variety * 11) % 60 + 40) / 100, 12,
                       hue(line * 20));
  }
  return picture;
}

QImage smallScreen(int variety, QSize size) {
  return screen(variety, size).scaled(256, 256, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

QImage applicationIcon(std::size_t index, int pixels) {
  const QColor colour = QColor::fromHsv(static_cast<int>(index * 47 % 360), 170, 230);
  const Shape form = index % 3 == 0 ? circle() : roundedRectangle(pixels * 0.2);
  const AnyView picture =
      zstack({form.gradient(colour.lighter(115), colour.darker(130)),
              circle().fill(QColor(255, 255, 255, 220)).padding(pixels * 0.32)});
  ViewRenderer renderer;
  renderer.render(picture, QSizeF(pixels, pixels), 1);
  return renderer.image().copy();
}

} // namespace tavrin::samples
