#include "TavrinWidgetsUI/Calendar/CalendarViews.h"

#include "TavrinCore/Kinds/Calendar/CalendarSettings.h"
#include "TavrinCore/Kinds/Calendar/ReminderSettings.h"
#include "TavrinWidgetsUI/Kit/Pieces.h"
#include "TavrinWidgetsUI/Kit/Utf8.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <algorithm>

namespace tavrin {
namespace {

constexpr QColor paper{0xF7, 0xF7, 0xF9};
constexpr QColor paperInk{0x1C, 0x1C, 0x1E};
constexpr QColor header{0xD9, 0x2F, 0x26};
constexpr QColor ground{0x1B, 0x17, 0x1A};
constexpr QColor listGround{0x1C, 0x18, 0x10};
/// Titles are read: larger than a caption may be.
constexpr double leastTitlePoints = 8;
constexpr double leastRowPoints = 7.5;

Text word(const QString& string, double points, const QColor& ink,
          FontWeight weight = FontWeight::medium) {
  return text(string).size(std::max(points, minimumCaptionSize)).weight(weight).colour(ink);
}

QColor eventColour(const CalendarEvent& event) {
  return withContrast(colourFromHex(event.colorHex.value_or(""), calendarTint), ground, 3);
}

/// A page of a desk calendar: the weekday on a red band, the day below. A band too low for the
/// weekday goes without.
AnyView datePage(Date now, const Calendar& calendar, double side) {
  constexpr double bandRatio = 0.3;
  const bool hasWeekday = side * bandRatio >= minimumCaptionSize;
  const Text weekday =
      word(utf8(calendar.text(now, "ccc")), side * 0.17, palette::white, FontWeight::semibold);
  const AnyView band = zstack({rectangle().fill(header), hasWeekday ? AnyView(weekday) : AnyView()})
                           .height(side * (hasWeekday ? bandRatio : 0.24));
  const AnyView day = text(QString::number(calendar.components(now).day))
                          .size(side * 0.5)
                          .weight(FontWeight::semibold)
                          .colour(paperInk)
                          .figure(minimumTypeSize)
                          .fill(Alignment::centre);
  return vstack({band, day}).background(rectangle().fill(paper));
}

/// What all of a list are fitted by: beside each other their sizes would differ.
QString longest(const std::vector<QString>& titles) {
  const auto found = std::ranges::max_element(titles, {}, &QString::size);
  return found == titles.end() ? QString() : *found;
}

AnyView colourBar(const QColor& colour, double width) {
  return capsule().fill(colour).width(width);
}

/// On a small tile the words need the room that bars and circles take.
bool isSmall(const TileSize& size) {
  return !size.isWide() && size.side < 84;
}

double insetOf(const TileSize& size) {
  return size.body() * (isSmall(size) ? 0.08 : 0.11);
}

/// When it is, in full where that fits.
AnyView whenLine(const CalendarEvent& event, const CalendarReading& reading, double points,
                 const QColor& ink) {
  const auto line = [&](const QString& string) { return word(string, points, ink); };
  return firstFitting({line(eventWhen(event, reading.now, reading.calendar)).figure(),
                       line(eventWhenBrief(event, reading.now, reading.calendar))});
}

/// Title and time in the calendar's colour: as a bar beside them, on a small tile the time itself.
AnyView eventBlock(const CalendarEvent& event, const CalendarReading& reading, double points,
                   int lines, bool hasBar) {
  const QColor colour = eventColour(event);
  const QColor ink = hasBar ? palette::caption(ground) : withContrast(colour, ground);
  const AnyView words =
      vstack({word(eventTitle(event), points, palette::figure(ground), FontWeight::semibold)
                  .lines(lines),
              whenLine(event, reading, points * 0.95, ink)})
          .align(Alignment::leading)
          .spacing(points * 0.1);
  if (!hasBar)
    return words;
  return words.padding({points * 0.55, 0, 0, 0})
      .overlay(colourBar(colour, std::max(points * 0.24, 2.0)).fill(Alignment::leading),
               Alignment::leading);
}

AnyView smallDate(const CalendarReading& reading, double points) {
  return hstack({word(utf8(reading.calendar.text(reading.now, "ccc")), points,
                      withContrast(calendarTint, ground)),
                 word(QString::number(reading.calendar.components(reading.now).day), points,
                      palette::figure(ground), FontWeight::semibold)})
      .spacing(points * 0.3);
}

AnyView agendaRows(const CalendarReading& reading, double points, double room) {
  std::vector<AnyView> rows;
  constexpr double gap = 1;
  const double height = points * 1.25;
  const auto most =
      std::max<std::size_t>(1, static_cast<std::size_t>((room + gap) / (height + gap)));
  std::vector<QString> titles;
  for (std::size_t i = 0; i < std::min(most, reading.events.size()); ++i)
    titles.push_back(eventTitle(reading.events[i]));
  for (std::size_t i = 0; i < titles.size(); ++i) {
    const auto& event = reading.events[i];
    rows.push_back(
        hstack({colourBar(eventColour(event), std::max(points * 0.22, 2.0)),
                word(titles[i], points, palette::figure(ground)).widest(longest(titles))})
            .spacing(points * 0.35)
            .height(height, Alignment::leading)
            .fillWidth());
  }
  return vstack(std::move(rows)).align(Alignment::leading).spacing(gap);
}

AnyView sideways(const AnyView& words, bool isTurned) {
  return isTurned ? words.quarterTurns(3) : words;
}

TileState tileState(CalendarState state) {
  switch (state) {
  case CalendarState::denied:
  case CalendarState::gone:
    return TileState::cannot;
  case CalendarState::notAsked:
    return TileState::waiting;
  case CalendarState::empty:
  case CalendarState::items:
    break;
  }
  return TileState::live;
}

/// What a tile of either kind shows where it has no items: words only of `nothing` being there,
/// those of a trouble are in the panel.
AnyView stateTile(CalendarState state, const QString& nothing, const char* mark,
                  const QColor& colour, const QColor& behind, const TileSize& size) {
  TileContent content;
  content.ground = behind;
  content.mark = symbol(mark).colour(colour);
  content.markRatio = 0.46;
  content.state = tileState(state);
  if (state == CalendarState::empty)
    content.sentence = nothing;
  return tile(content, size);
}

AnyView agenda(const CalendarReading& reading, const TileSize& size) {
  const double points = std::max(size.words(0.115), leastRowPoints);
  const double room = size.body() - 2 * insetOf(size);
  if (!size.hasCaption())
    return agendaRows(reading, points, room);
  const double dateHeight = points * 1.15 * 1.2;
  return vstack({smallDate(reading, points * 1.15), agendaRows(reading, points, room - dateHeight)})
      .align(Alignment::leading);
}

AnyView eventTile(const CalendarReading& reading, const TileSize& size) {
  const auto next = UpNext::current(reading.events, reading.now);
  const double points = std::max(size.words(0.15), leastTitlePoints);
  AnyView inner;
  if (!next)
    inner = smallDate(reading, points);
  else if (reading.settings.style == CalendarTileStyle::agenda)
    inner = agenda(reading, size);
  else if (reading.settings.style == CalendarTileStyle::nextEvent)
    inner = eventBlock(*next, reading, points, isSmall(size) ? 2 : 3, !isSmall(size));
  else
    inner = vstack({smallDate(reading, isSmall(size) ? points : points * 1.1),
                    eventBlock(*next, reading, points * 0.88, 2, !isSmall(size))})
                .align(Alignment::leading)
                .spacing(isSmall(size) ? 0 : size.body() * 0.05);
  return tile(ground,
              sideways(inner.fill(Alignment::leading).padding(insetOf(size)),
                       reading.settings.turnsTextSideways),
              size);
}

QString spoken(const CalendarReading& reading) {
  const auto next = UpNext::current(reading.events, reading.now);
  if (reading.state != CalendarState::items || !next)
    return calendarWords(reading.state).sentence;
  return joinedFacts({eventTitle(*next), eventWhen(*next, reading.now, reading.calendar)});
}

QString today(const CalendarReading& reading) {
  return worded("Calendar, {date}", {{"date", reading.calendar.fullDate(reading.now)}});
}

QColor reminderInk(const Reminder& reminder, const ReminderReading& reading) {
  const bool isLate = isOverdue(reminder, reading.now, reading.calendar);
  return withContrast(isLate ? palette::red : reminderTint, listGround, 3);
}

/// A circle, filled once the reminder is done.
AnyView checkCircle(const Reminder& reminder, const ReminderReading& reading, double side) {
  return symbol(reminder.isCompleted ? "largecircle.fill.circle" : "circle")
      .colour(reminderInk(reminder, reading))
      .size(side);
}

/// `hasCircle` is not given on small tiles: there a dot stands for it.
AnyView reminderRow(const Reminder& reminder, const ReminderReading& reading, double points,
                    const QString& longestTitle, bool hasCircle = true) {
  const QColor ink =
      reminder.isCompleted ? palette::caption(listGround) : palette::figure(listGround);
  const QColor dot = reminder.isCompleted ? ink : reminderInk(reminder, reading);
  return hstack({hasCircle ? checkCircle(reminder, reading, points * 1.1)
                           : circle().fill(dot).frame(points * 0.5, points * 0.5),
                 word(utf8(displayTitle(reminder)), points, ink).widest(longestTitle)})
      .spacing(points * 0.4);
}

Text reminderTime(const Reminder& reminder, const ReminderReading& reading, double points) {
  const QColor ink = isOverdue(reminder, reading.now, reading.calendar)
                         ? withContrast(palette::red, listGround)
                         : palette::caption(listGround);
  return word(reminderWhen(reminder, reading.now, reading.calendar), points, ink).figure();
}

/// The circle of the next reminder and when it is due; of the two the circle goes first.
AnyView reminderHead(const Reminder& reminder, const ReminderReading& reading, double points) {
  const AnyView mark = checkCircle(reminder, reading, points * 1.4);
  const Text when = reminderTime(reminder, reading, points * 0.95);
  if (when.string.isEmpty())
    return mark;
  return firstFitting(
      {hstack({mark, when}).spacing(points * 0.35), when, when.figure(minimumCaptionSize), mark});
}

std::vector<QString> firstTitles(const ReminderReading& reading, std::size_t most) {
  std::vector<QString> titles;
  for (std::size_t i = 0; i < std::min(most, reading.reminders.size()); ++i)
    titles.push_back(utf8(displayTitle(reading.reminders[i])));
  return titles;
}

std::size_t openCount(const ReminderReading& reading) {
  return static_cast<std::size_t>(
      std::count_if(reading.reminders.begin(), reading.reminders.end(),
                    [](const Reminder& reminder) { return !reminder.isCompleted; }));
}

QString spoken(const ReminderReading& reading) {
  if (reading.state != CalendarState::items)
    return reminderWords(reading.state).sentence;
  const auto& first = reading.reminders.front();
  return wordedPlural("{count} open, next: {title}", "{count} open, next: {title}",
                      static_cast<long long>(openCount(reading)), {{"title", displayTitle(first)}});
}

AnyView reminderItems(const ReminderReading& reading, const TileSize& size) {
  const double points = std::max(size.words(0.15), leastTitlePoints);
  if (reading.settings.style == ReminderTileStyle::count || openCount(reading) == 0) {
    TileContent content;
    content.ground = listGround;
    if (openCount(reading) == 0) {
      content.state = TileState::done;
    } else {
      content.figure = QString::number(openCount(reading));
      content.caption = wordedIn("reminders", "open");
      content.mark = symbol("list.bullet").colour(reminderTint);
      content.markRatio = 0.2;
    }
    return tile(content, size);
  }
  AnyView inner;
  if (reading.settings.style == ReminderTileStyle::next) {
    const auto& next = reading.reminders.front();
    inner = vstack({reminderHead(next, reading, points),
                    word(utf8(displayTitle(next)), points, palette::figure(listGround),
                         FontWeight::semibold)
                        .lines(isSmall(size) ? 2 : 3)})
                .align(Alignment::leading)
                .spacing(isSmall(size) ? 1 : points * 0.3);
  } else {
    std::vector<AnyView> rows;
    const auto titles = firstTitles(reading, isSmall(size) ? 3 : 4);
    for (std::size_t i = 0; i < titles.size(); ++i)
      rows.push_back(reminderRow(reading.reminders[i], reading, points * (isSmall(size) ? 1 : 0.9),
                                 longest(titles), !isSmall(size))
                         .fillWidth());
    inner = vstack(std::move(rows)).align(Alignment::leading).spacing(points * 0.2);
  }
  return tile(listGround, inner.fill(Alignment::leading).padding(insetOf(size)), size);
}

/// A sentence on up to three lines, else its brief form.
AnyView wideWords(const CalendarWords& words, const QColor& behind, const TileSize& size) {
  const auto set = [&](const QString& string, double ratio) {
    return word(string, size.body() * ratio, palette::figure(behind), FontWeight::semibold);
  };
  return firstFitting({set(words.sentence, 0.22).figure(size.body() * 0.19),
                       set(words.sentence, 0.19).lines(2).figure(),
                       set(words.sentence, 0.175).lines(3).figure(minimumCaptionSize),
                       set(words.brief, 0.22).figure(), set(words.brief, 0.175).lines(2)});
}

} // namespace

AnyView calendarTileIcon(const CalendarReading& reading, const TileSize& size) {
  const bool isDate = reading.settings.style == CalendarTileStyle::date;
  const bool hasItems = reading.state == CalendarState::items;
  const bool showsDate = isDate || (reading.state == CalendarState::empty &&
                                    reading.settings.style != CalendarTileStyle::nextEvent);
  AnyView picture;
  if (showsDate)
    picture = tile(paper,
                   sideways(datePage(reading.now, reading.calendar, size.body()),
                            reading.settings.turnsTextSideways),
                   size);
  else if (hasItems)
    picture = eventTile(reading, size);
  else
    picture = stateTile(reading.state, calendarWords(reading.state).sentence, "calendar",
                        withContrast(calendarTint, ground, 3), ground, size);
  return picture.accessibility(today(reading), spoken(reading));
}

AnyView calendarWideTile(const CalendarReading& reading, const TileSize& size) {
  WideTileContent content;
  content.ground = ground;
  const bool isTurned = reading.settings.turnsTextSideways;
  content.mark = sideways(datePage(reading.now, reading.calendar, size.body() * 0.6), isTurned)
                     .clip(superellipse(size.body() * 0.13));
  content.label = today(reading);
  content.value = spoken(reading);
  if (reading.state != CalendarState::items) {
    content.state = tileState(reading.state);
    // A page that is dimmed cannot be read.
    if (content.state != TileState::live)
      content.mark = symbol("calendar").colour(withContrast(calendarTint, ground, 3));
    content.middle = sideways(wideWords(calendarWords(reading.state), ground, size), isTurned);
    return wideTile(content, size);
  }
  std::vector<AnyView> blocks;
  for (const auto& event : reading.events) {
    if (blocks.size() == (size.span > 2 ? 2u : 1u))
      break;
    blocks.push_back(
        sideways(eventBlock(event, reading, size.body() * (isTurned ? 0.17 : 0.18), 2, !isTurned),
                 isTurned));
  }
  content.middle = hstack(std::move(blocks)).spacing(size.body() * 0.16);
  return wideTile(content, size);
}

AnyView reminderTileIcon(const ReminderReading& reading, const TileSize& size) {
  const AnyView picture = reading.state == CalendarState::items
                              ? reminderItems(reading, size)
                              : stateTile(reading.state, reminderWords(reading.state).sentence,
                                          "list.bullet", reminderTint, listGround, size);
  return picture.accessibility(worded("Reminders"), spoken(reading));
}

AnyView reminderWideTile(const ReminderReading& reading, const TileSize& size) {
  const double body = size.body();
  WideTileContent content;
  content.ground = listGround;
  content.label = worded("Reminders");
  content.value = spoken(reading);
  content.mark = symbol("list.bullet").colour(reminderTint).padding(body * 0.06);
  if (reading.state != CalendarState::items) {
    content.state = tileState(reading.state);
    content.middle = wideWords(reminderWords(reading.state), listGround, size);
    return wideTile(content, size);
  }
  if (openCount(reading) == 0) {
    content.state = TileState::done;
    content.middle = wideWords({worded("All done"), {}, worded("Done")}, listGround, size);
    return wideTile(content, size);
  }
  std::vector<AnyView> rows;
  const double points = size.words(0.18);
  const auto titles = firstTitles(reading, 2);
  for (std::size_t i = 0; i < titles.size(); ++i) {
    const auto& reminder = reading.reminders[i];
    if (size.span > 2)
      rows.push_back(
          hstack({reminderRow(reminder, reading, points, {}), spacer(),
                  reminderTime(reminder, reading, points * 0.9).padding({points * 0.4, 0, 0, 0})})
              .fillWidth());
    else
      rows.push_back(reminderRow(reminder, reading, points, longest(titles)));
  }
  content.mark = zstack(
      {circle().fill(mix(listGround, reminderTint, 0.22)), text(QString::number(openCount(reading)))
                                                               .size(body * 0.26)
                                                               .weight(FontWeight::semibold)
                                                               .colour(reminderTint)
                                                               .figure(minimumTypeSize)});
  content.middle = vstack(std::move(rows)).align(Alignment::leading).spacing(body * 0.06);
  return wideTile(content, size);
}

} // namespace tavrin
