#include "TavrinCore/Kinds/Calendar/CalendarSettings.h"
#include "TavrinCore/Kinds/Calendar/ReminderSettings.h"
#include "TavrinSettings/Samples/SampleValues.h"
#include "TavrinWidgetsUI/Calendar/CalendarPanelView.h"
#include "TavrinWidgetsUI/Calendar/CalendarViews.h"
#include "Tools/Gallery/Gallery.h"
#include "Tools/Gallery/GalleryCalendars.h"

namespace tavrin {
namespace {

/// Wednesday, 9 September 2026, 12:08 in Berlin.
constexpr Date noon = Date::fromUnixSeconds(1'788'948'522);
const char* const longTitle =
    "Quarterly Donaudampfschifffahrtsgesellschaft planning with everybody who may come";

std::vector<CalendarEvent> someEvents() {
  auto events = samples::events(noon, german());
  events[2].title = longTitle;
  return events;
}

CalendarReading reading(CalendarTileStyle style, CalendarState state, std::size_t skip = 0,
                        const Calendar& calendar = german()) {
  CalendarReading made{{}, state, {}, noon, calendar};
  made.settings.style = style;
  if (state == CalendarState::items)
    made.events = someEvents();
  made.events.erase(made.events.begin(), made.events.begin() + static_cast<std::ptrdiff_t>(std::min(
                                                                   skip, made.events.size())));
  return made;
}

struct CalendarCase {
  std::string name;
  CalendarReading reading;
};

std::vector<CalendarCase> calendarCases() {
  std::vector<CalendarCase> cases;
  for (const auto style : allCases<CalendarTileStyle>()) {
    const std::string name(nameOf(style));
    cases.push_back({name, reading(style, CalendarState::items)});
    cases.push_back({"long", reading(style, CalendarState::items, 2)});
    cases.push_back({"all day", reading(style, CalendarState::items, 3)});
    cases.push_back({"12 h", reading(style, CalendarState::items, 1, american())});
    auto turned = reading(style, CalendarState::items);
    turned.settings.turnsTextSideways = true;
    cases.push_back({"sideways", turned});
    cases.push_back({"empty", reading(style, CalendarState::empty)});
  }
  cases.push_back({"not asked", reading(CalendarTileStyle::agenda, CalendarState::notAsked)});
  cases.push_back({"denied", reading(CalendarTileStyle::agenda, CalendarState::denied)});
  cases.push_back({"gone", reading(CalendarTileStyle::agenda, CalendarState::gone)});
  return cases;
}

struct ReminderCase {
  std::string name;
  ReminderReading reading;
};

std::vector<ReminderCase> reminderCases() {
  const auto made = [](ReminderTileStyle style, CalendarState state, bool isDone = false) {
    ReminderReading reading{{}, state, {}, noon, german()};
    reading.settings.style = style;
    const Date today = german().startOfDay(noon);
    if (state == CalendarState::items && !isDone) {
      reading.reminders = samples::reminders(noon, german());
      reading.reminders.pop_back();
      reading.reminders[2].title = longTitle;
      reading.reminders.insert(reading.reminders.begin() + 3,
                               {"4", "l", "", today + 2 * 86'400, true, false, {}, 0});
    }
    if (state == CalendarState::items)
      reading.reminders.push_back({"6", "l", "Buy milk", today, true, true, noon, 0});
    return reading;
  };
  std::vector<ReminderCase> cases;
  for (const auto style : allCases<ReminderTileStyle>()) {
    cases.push_back({std::string(nameOf(style)), made(style, CalendarState::items)});
    cases.push_back({"all done", made(style, CalendarState::items, true)});
  }
  for (const auto& [name, state] :
       {std::pair("not asked", CalendarState::notAsked), std::pair("denied", CalendarState::denied),
        std::pair("empty", CalendarState::empty)})
    cases.push_back({name, made(ReminderTileStyle::list, state)});
  return cases;
}

} // namespace

GallerySheet calendarGallery() {
  GallerySheet sheet;
  for (const int span : {1, 2, 3}) {
    for (const auto& entry : calendarCases())
      if (span == 1 || entry.reading.settings.style == CalendarTileStyle::agenda)
        sheet.push_back({entry.name, span, [reading = entry.reading](const TileSize& size) {
                           return size.isWide() ? calendarWideTile(reading, size)
                                                : calendarTileIcon(reading, size);
                         }});
    for (const auto& entry : reminderCases())
      sheet.push_back({entry.name, span, [reading = entry.reading](const TileSize& size) {
                         return size.isWide() ? reminderWideTile(reading, size)
                                              : reminderTileIcon(reading, size);
                       }});
  }
  return sheet;
}

GalleryPanels calendarPanels() {
  GalleryPanels panels;
  for (const auto& entry : calendarCases())
    if (entry.reading.settings.style == CalendarTileStyle::agenda &&
        !entry.reading.settings.turnsTextSideways)
      panels.push_back({entry.name, calendarTint, [entry](const PanelAppearance& look) {
                          return new CalendarPanelView(
                              look, {[] { return std::string("Calendar"); },
                                     [entry] { return entry.reading; }, [] {}, [] {}, [] {}});
                        }});
  for (const auto& entry : reminderCases())
    if (entry.reading.settings.style == ReminderTileStyle::list)
      panels.push_back({entry.name, reminderTint, [entry](const PanelAppearance& look) {
                          return new ReminderPanelView(look,
                                                       {[] { return std::string("Reminders"); },
                                                        [entry] { return entry.reading; }, [] {},
                                                        [](const std::string&) {}, [] {}, [] {}});
                        }});
  return panels;
}

const GalleryEntry calendarEntries[] = {{"calendar", calendarGallery},
                                        {"calendar-panels", calendarPanels}};

} // namespace tavrin
