#include "TavrinWidgetsUI/System/CountdownViews.h"

#include "TavrinCore/Kinds/System/CountdownSettings.h"
#include "TavrinCore/Text/ClockText.h"
#include "TavrinCore/Text/DecimalText.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <algorithm>
#include <fmt/format.h>

namespace tavrin {
namespace {

constexpr std::int64_t hour = 3600;
constexpr std::int64_t day = 24 * hour;
/// The mean year of the calendar.
constexpr std::int64_t year = 31'556'952;

QColor countdownTrack() {
  return countdownAccent;
}

bool isOver(const CountdownSettings& settings, Date now) {
  return !settings.countsUpAfter && Countdown::interval(settings, now) <= 0;
}

/// "Launch" before, "since Launch" after it.
QString captionOf(const std::string& name, const CountdownSettings& settings, Date now) {
  return Countdown::showsTimeSince(settings, now) ? worded("since {name}", {{"name", name}})
                                                  : QString::fromStdString(name);
}

/// The first of the forms that fits, each at full size or a little smaller; where none does, the
/// last one as small as a caption.
AnyView fittingForm(const std::vector<std::string>& forms, double points, TextAlignment alignment) {
  std::vector<AnyView> candidates;
  const auto add = [&](const std::string& form, double size, double least) {
    const auto string = QString::fromStdString(form);
    candidates.push_back(text(string)
                             .size(size)
                             .weight(FontWeight::semibold)
                             .colour(palette::figure(countdownGround))
                             .widest(widestDigits(string))
                             .align(alignment)
                             .figure(least));
  };
  for (const auto& form : forms)
    for (const double share : {1.0, 0.9, 0.8, 0.7, 0.6, 0.5, 0.4}) {
      const double size = points * share;
      if (size < minimumTypeSize && share < 1)
        break;
      add(form, std::max(size, minimumTypeSize), std::max(size, minimumTypeSize));
    }
  add(forms.back(), minimumTypeSize, minimumCaptionSize);
  return firstFitting(std::move(candidates));
}

Text caption(const QString& words, double points,
             const QColor& ink = palette::caption(countdownGround)) {
  return text(words).size(points).weight(FontWeight::medium).colour(ink);
}

/// "since Launch" where it fits as it is, else the name alone.
AnyView nameLine(const std::string& name, const CountdownSettings& settings, Date now,
                 const TileSize& size) {
  const double points = size.words(0.19);
  const QColor ink = size.quietInk(countdownGround);
  const Text whole = caption(captionOf(name, settings, now), points, ink);
  const QString bare = QString::fromStdString(name);
  if (whole.string == bare)
    return whole;
  return firstFitting({whole.figure(size.words(0)), caption(bare, points, ink)});
}

} // namespace

QColor countdownTint() {
  return {0xA7, 0x8B, 0xFA};
}

std::vector<std::string> countdownForms(std::int64_t seconds) {
  if (seconds < day)
    return {clockText(seconds)};
  std::vector<std::string> forms = {
      translated("{days}d {hours}h", {{"days", seconds / day}, {"hours", seconds % day / hour}}),
      translated("{days}d", {{"days", seconds / day}})};
  if (seconds >= 1000 * day)
    forms.push_back(translated("{years}y", {{"years", (seconds + year / 2) / year}}));
  return forms;
}

namespace {

/// What a screen reader says: "Launch, 3d 4h left", "since Launch, 2d 2h".
void describe(auto& content, const std::string& name, const CountdownSettings& settings, Date now) {
  const std::string form = countdownForms(Countdown::displayedSeconds(settings, now)).front();
  content.label = captionOf(name, settings, now);
  if (isOver(settings, now))
    content.value = QString::fromStdString(form);
  else
    content.value = Countdown::showsTimeSince(settings, now)
                        ? utf8(form)
                        : worded("{time} left", {{"time", form}});
}

} // namespace

AnyView countdownTileIcon(const std::string& name, const CountdownSettings& settings, Date now,
                          const TileSize& size) {
  const auto seconds = Countdown::displayedSeconds(settings, now);
  const auto forms = countdownForms(seconds);
  TileContent content;
  content.ground = countdownGround;
  content.border =
      TileBorder{Countdown::weekShare(settings, now), countdownTint(), countdownTrack()};
  // No room for "since" beside a name; the ring is empty once the moment has passed.
  content.caption = QString::fromStdString(name);
  describe(content, name, settings, now);
  if (isOver(settings, now)) {
    content.state = TileState::done;
    content.markRatio = 0.2;
    content.figure = QString::fromStdString(forms.front());
  } else if (seconds < day) {
    content.figure = QString::fromStdString(forms.front());
  } else {
    // Changes with the hour: the room decides how much of it there is.
    content.mark = fittingForm(forms, size.figure(), TextAlignment::centre);
    content.markRatio = 0.40;
  }
  return tile(content, size);
}

AnyView countdownWideTile(const std::string& name, const CountdownSettings& settings, Date now,
                          const TileSize& size) {
  const auto forms = countdownForms(Countdown::displayedSeconds(settings, now));
  const bool over = isOver(settings, now);
  const double side = size.body() - 2 * size.padding();
  const QColor tint = countdownTint();
  const AnyView sign = symbol(over ? "checkmark" : "hourglass")
                           .size(side * 0.42)
                           .colour(over ? palette::green : tint);
  WideTileContent content;
  content.ground = countdownGround;
  content.groundEnd = mix(countdownGround, palette::black, 0.25);
  content.tint = tint;
  content.mark = zstack({ring(Countdown::weekShare(settings, now))
                             .tint(tint)
                             .track(countdownTrack())
                             .thickness(side * 0.1),
                         sign});
  const AnyView figure = fittingForm(forms, size.figure(), TextAlignment::leading);
  content.middle = vstack({nameLine(name, settings, now, size), figure})
                       .align(Alignment::leading)
                       .spacing(size.body() * 0.01);
  describe(content, name, settings, now);
  return wideTile(content, size).accessibility(content.label, content.value);
}

AnyView countdownDial(const CountdownSettings& settings, Date now, double side) {
  const auto seconds = Countdown::displayedSeconds(settings, now);
  const double room = side * 0.74;
  const auto figure = [&](const std::string& string, double points) {
    const auto form = QString::fromStdString(string);
    return text(form)
        .size(points)
        .weight(FontWeight::semibold)
        .colour(palette::figure(countdownGround))
        .widest(widestDigits(form))
        .align(TextAlignment::centre)
        .figure(minimumTypeSize);
  };
  AnyView centre;
  if (isOver(settings, now))
    centre = vstack({symbol("checkmark").size(side * 0.16).colour(palette::green),
                     figure(clockText(0), side * 0.2)})
                 .spacing(side * 0.02);
  else if (seconds < day)
    centre = figure(clockText(seconds), side * 0.2);
  else
    centre = vstack({figure(countText(seconds / day), side * 0.27),
                     caption(wordedPlural("day", "days", seconds / day), side * 0.085),
                     figure(fmt::format("{:02}:{:02}:{:02}", seconds % day / hour,
                                        seconds % hour / 60, seconds % 60),
                            side * 0.115)})
                 .spacing(side * 0.01);
  return zstack({ring(Countdown::weekShare(settings, now))
                     .tint(countdownTint())
                     .track(countdownTrack())
                     .thickness(side * 0.065),
                 centre.frame({.maxWidth = room})})
      .frame(side, side);
}

} // namespace tavrin
