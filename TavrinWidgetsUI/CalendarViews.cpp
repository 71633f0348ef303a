#include "TavrinWidgetsUI/CalendarViews.h"

#include <algorithm>

namespace tavrin {
namespace {

constexpr QColor paper{0xF7, 0xF7, 0xF9};
constexpr QColor paperInk{0x1C, 0x1C, 0x1E};
constexpr QColor header{0xD9, 0x2F, 0x26};
constexpr QColor ground{0x1B, 0x17, 0x1A};
constexpr QColor listGround{0x1C, 0x18, 0x10};

QString utf8(const std::string& text) {
  return QString::fromStdString(text);
}

Text word(const QString& string, double points, const QColor& ink,
          FontWeight weight = FontWeight::medium) {
  return text(string).size(std::max(points, minimumTypeSize)).weight(weight).colour(ink);
}

QColor eventColour(const CalendarEvent& event) {
  return withContrast(colourFromHex(event.colorHex.value_or(""), calendarTint), ground, 3);
}

/// A page of a desk calendar: the weekday on a red band, the day below.
AnyView datePage(Date now, const Calendar& calendar, double side) {
  const double bandHeight = side * 0.3;
  const AnyView band =
      zstack({rectangle().fill(header), word(utf8(calendar.localText(now, "EEE")), side * 0.17,
                                             palette::white, FontWeight::semibold)})
          .height(bandHeight);
  const AnyView day = text(QString::number(calendar.components(now).day))
                          .size(side * 0.5)
                          .weight(FontWeight::semibold)
                          .colour(paperInk)
                          .figure(minimumTypeSize)
                          .fill(Alignment::centre);
  return vstack({band, day}).background(rectangle().fill(paper));
}

AnyView colourBar(const QColor& colour, double width) {
  return capsule().fill(colour).width(width);
}

/// Title and time beside the calendar's colour.
AnyView eventBlock(const CalendarEvent& event, const CalendarReading& reading, double points,
                   int lines) {
  const AnyView words =
      vstack({word(eventTitle(event), points, palette::figure(ground), FontWeight::semibold)
                  .lines(lines),
              word(eventWhen(event, reading.now, reading.calendar), points * 0.95,
                   palette::caption(ground))})
          .align(Alignment::leading)
          .spacing(points * 0.1);
  return words.padding({points * 0.55, 0, 0, 0})
      .overlay(colourBar(eventColour(event), std::max(points * 0.24, 2.0)).fill(Alignment::leading),
               Alignment::leading);
}

AnyView smallDate(const CalendarReading& reading, double points) {
  return hstack({word(utf8(reading.calendar.localText(reading.now, "EEE")), points,
                      withContrast(calendarTint, ground)),
                 word(QString::number(reading.calendar.components(reading.now).day), points,
                      palette::figure(ground), FontWeight::semibold)})
      .spacing(points * 0.3);
}

AnyView agendaRows(const CalendarReading& reading, double points, double room) {
  std::vector<AnyView> rows;
  const double height = points * 1.3;
  const auto most = std::max<std::size_t>(1, static_cast<std::size_t>(room / (height + 2)));
  for (const auto& event : reading.events) {
    if (rows.size() == most)
      break;
    rows.push_back(hstack({colourBar(eventColour(event), std::max(points * 0.22, 2.0)),
                           word(eventTitle(event), points, palette::figure(ground))})
                       .spacing(points * 0.35)
                       .height(height, Alignment::leading)
                       .fillWidth());
  }
  return vstack(std::move(rows)).align(Alignment::leading).spacing(2);
}

AnyView sideways(const AnyView& words, bool isTurned) {
  return isTurned ? words.quarterTurns(3) : words;
}

/// What a tile of either kind shows where it has no items.
AnyView stateTile(CalendarState state, const char* mark, const QColor& colour, const QColor& behind,
                  const TileSize& size) {
  TileContent content;
  content.ground = behind;
  content.mark = symbol(mark).colour(colour);
  content.markRatio = 0.46;
  content.state = state == CalendarState::denied || state == CalendarState::gone ? TileState::cannot
                  : state == CalendarState::notAsked ? TileState::waiting
                                                     : TileState::live;
  return tile(content, size);
}

AnyView eventTile(const CalendarReading& reading, const TileSize& size) {
  const double body = size.body();
  const double points = std::max(body * 0.15, minimumTypeSize);
  const double inset = body * 0.11;
  const auto next = UpNext::current(reading.events, reading.now);
  const bool hasItems = reading.state == CalendarState::items && next;
  AnyView inner;
  switch (reading.settings.style) {
  case CalendarTileStyle::nextEvent:
    inner = eventBlock(*next, reading, points, size.side >= 84 ? 3 : 2);
    break;
  case CalendarTileStyle::agenda:
    inner = vstack({size.hasCaption() ? smallDate(reading, points) : AnyView(),
                    agendaRows(reading, points * 0.95,
                               body - 2 * inset - (size.hasCaption() ? points * 1.4 : 0))})
                .align(Alignment::leading)
                .spacing(2);
    break;
  default: {
    const AnyView date = smallDate(reading, points * 1.15);
    inner =
        vstack({date, hasItems ? eventBlock(*next, reading, points * 0.95, size.side >= 84 ? 2 : 1)
                               : AnyView()})
            .align(Alignment::leading)
            .spacing(body * 0.06);
  }
  }
  return tile(
      ground,
      sideways(inner.fill(Alignment::leading).padding(inset), reading.settings.turnsTextSideways),
      size);
}

QString spoken(const CalendarReading& reading) {
  const auto next = UpNext::current(reading.events, reading.now);
  if (reading.state != CalendarState::items || !next)
    return calendarWords(reading.state).sentence;
  return eventTitle(*next) + ", " + eventWhen(*next, reading.now, reading.calendar);
}

QString today(const CalendarReading& reading) {
  return "Calendar, " + utf8(reading.calendar.localText(reading.now, "EEEEMMMMd"));
}

/// A circle, filled once the reminder is done.
AnyView checkCircle(const Reminder& reminder, const ReminderReading& reading, double side) {
  const bool isLate = isOverdue(reminder, reading.now, reading.calendar);
  return symbol(reminder.isCompleted ? "largecircle.fill.circle" : "circle")
      .colour(withContrast(isLate ? palette::red : reminderTint, listGround, 3))
      .size(side);
}

AnyView reminderRow(const Reminder& reminder, const ReminderReading& reading, double points,
                    int lines) {
  const QColor ink =
      reminder.isCompleted ? palette::caption(listGround) : palette::figure(listGround);
  return hstack({checkCircle(reminder, reading, points * 1.1),
                 word(utf8(displayTitle(reminder)), points, ink).lines(lines)})
      .spacing(points * 0.4);
}

AnyView whenLine(const Reminder& reminder, const ReminderReading& reading, double points) {
  const QColor ink = isOverdue(reminder, reading.now, reading.calendar)
                         ? withContrast(palette::red, listGround)
                         : palette::caption(listGround);
  return word(reminderWhen(reminder, reading.now, reading.calendar), points, ink);
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
  return QString("%1 open, next: %2").arg(openCount(reading)).arg(utf8(displayTitle(first)));
}

AnyView reminderItems(const ReminderReading& reading, const TileSize& size) {
  const double body = size.body();
  const double points = std::max(body * 0.15, minimumTypeSize);
  if (reading.settings.style == ReminderTileStyle::count || openCount(reading) == 0) {
    TileContent content;
    content.ground = listGround;
    if (openCount(reading) == 0) {
      content.state = TileState::done;
    } else {
      content.figure = QString::number(openCount(reading));
      content.caption = "open";
      content.mark = symbol("list.bullet").colour(reminderTint);
      content.markRatio = 0.24;
    }
    return tile(content, size);
  }
  AnyView inner;
  if (reading.settings.style == ReminderTileStyle::next) {
    const auto& next = reading.reminders.front();
    inner = vstack({hstack({checkCircle(next, reading, points * 1.5),
                            whenLine(next, reading, points * 0.95)})
                        .spacing(points * 0.4),
                    word(utf8(displayTitle(next)), points, palette::figure(listGround),
                         FontWeight::semibold)
                        .lines(size.side >= 84 ? 3 : 2)})
                .align(Alignment::leading)
                .spacing(points * 0.3);
  } else {
    std::vector<AnyView> rows;
    for (const auto& reminder : reading.reminders) {
      if (rows.size() == (size.side >= 84 ? 4u : 3u))
        break;
      rows.push_back(reminderRow(reminder, reading, points * 0.95, 1).fillWidth());
    }
    inner = vstack(std::move(rows)).align(Alignment::leading).spacing(points * 0.2);
  }
  return tile(listGround, inner.fill(Alignment::leading).padding(body * 0.11), size);
}

AnyView wideWords(const QString& first, const QString& second, const QColor& behind,
                  const TileSize& size) {
  const double body = size.body();
  return vstack({word(first, body * 0.22, palette::figure(behind), FontWeight::semibold),
                 second.isEmpty() ? AnyView()
                                  : AnyView(word(second, body * 0.18, palette::caption(behind)))})
      .align(Alignment::leading)
      .spacing(body * 0.04);
}

} // namespace

AnyView calendarTileIcon(const CalendarReading& reading, const TileSize& size) {
  const bool isDate = reading.settings.style == CalendarTileStyle::date;
  const bool hasItems = reading.state == CalendarState::items;
  const bool showsDate = isDate || (reading.state == CalendarState::empty &&
                                    reading.settings.style != CalendarTileStyle::nextEvent);
  AnyView picture;
  if (showsDate)
    picture = tile(paper, datePage(reading.now, reading.calendar, size.body()), size);
  else if (hasItems)
    picture = eventTile(reading, size);
  else
    picture =
        stateTile(reading.state, "calendar", withContrast(calendarTint, ground, 3), ground, size);
  return picture.accessibility(today(reading), spoken(reading));
}

AnyView calendarWideTile(const CalendarReading& reading, const TileSize& size) {
  WideTileContent content;
  content.ground = ground;
  content.mark = datePage(reading.now, reading.calendar, size.body() * 0.6)
                     .clip(superellipse(size.body() * 0.13));
  content.label = today(reading);
  content.value = spoken(reading);
  if (reading.state != CalendarState::items) {
    content.middle = wideWords(calendarWords(reading.state).sentence, {}, ground, size);
    return wideTile(content, size);
  }
  std::vector<AnyView> blocks;
  for (const auto& event : reading.events) {
    if (blocks.size() == (size.span > 2 ? 2u : 1u))
      break;
    blocks.push_back(eventBlock(event, reading, size.body() * 0.19, 1));
  }
  content.middle = hstack(std::move(blocks)).spacing(size.body() * 0.16);
  return wideTile(content, size);
}

AnyView reminderTileIcon(const ReminderReading& reading, const TileSize& size) {
  const AnyView picture =
      reading.state == CalendarState::items
          ? reminderItems(reading, size)
          : stateTile(reading.state, "list.bullet", reminderTint, listGround, size);
  return picture.accessibility("Reminders", spoken(reading));
}

AnyView reminderWideTile(const ReminderReading& reading, const TileSize& size) {
  const double body = size.body();
  WideTileContent content;
  content.ground = listGround;
  content.label = "Reminders";
  content.value = spoken(reading);
  content.mark = symbol("list.bullet").colour(reminderTint).padding(body * 0.06);
  if (reading.state != CalendarState::items) {
    content.middle = wideWords(reminderWords(reading.state).sentence, {}, listGround, size);
    return wideTile(content, size);
  }
  std::vector<AnyView> rows;
  for (const auto& reminder : reading.reminders) {
    if (rows.size() == 2)
      break;
    rows.push_back(reminderRow(reminder, reading, body * 0.2, 1));
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
