#include "TavrinCore/Kinds/System/ClockSettings.h"
#include "TavrinCore/Kinds/System/CountdownSettings.h"
#include "TavrinCore/Kinds/System/TimeProgressSettings.h"
#include "TavrinWidgetsUI/System/ClockPanelView.h"
#include "TavrinWidgetsUI/System/ClockViews.h"
#include "TavrinWidgetsUI/System/CountdownPanelView.h"
#include "TavrinWidgetsUI/System/CountdownViews.h"
#include "TavrinWidgetsUI/System/TimeProgressPanelView.h"
#include "TavrinWidgetsUI/System/TimeProgressViews.h"
#include "Tools/Gallery/Gallery.h"
#include "Tools/Gallery/GalleryCalendars.h"
#include "Tools/Gallery/System/SystemStand.h"

namespace tavrin {
namespace {

/// Wednesday, 9 September 2026, 22:08:42 in Berlin.
constexpr Date morning = galleryEvening - 12.0 * 3600;
struct ClockCase {
  const char* name;
  ClockSettings settings;
  Date date;
  Calendar calendar;
};

std::vector<ClockCase> clockCases() {
  std::vector<ClockCase> cases;
  const auto add = [&](const char* name, bool showsSeconds, bool isAnalog, Date date,
                       const Calendar& calendar, const char* zone = nullptr) {
    ClockSettings settings;
    settings.showsSeconds = showsSeconds;
    settings.isAnalog = isAnalog;
    if (zone != nullptr)
      settings.timeZoneID = zone;
    cases.push_back({name, settings, date, calendar});
  };
  add("24 h", false, false, galleryEvening, german());
  add("24 h s", true, false, galleryEvening, german());
  add("12 h", false, false, morning, american());
  add("12 h s", true, false, galleryEvening, american());
  add("face", false, true, morning, german());
  add("face s", true, true, morning, german());
  add("night", false, true, galleryEvening, german());
  add("night s", true, true, galleryEvening, german());
  add("Auckland", false, false, galleryEvening, american(), "Pacific/Auckland");
  add("B. Aires", true, false, galleryEvening, german(), "America/Argentina/Buenos_Aires");
  return cases;
}

struct CountdownCase {
  const char* name;
  const char* title;
  double left;
  bool countsUpAfter = false;
};

constexpr CountdownCase countdownCases[] = {
    {"10 years", "Retirement", 3652 * 86'400.0 + 5000},
    {"99 days", "Grandmother's birthday", 99 * 86'400.0 + 83'000},
    {"14 days", "Holiday", 14 * 86'400.0},
    {"3 days", "Launch", 3 * 86'400.0 + 15'000},
    {"a day", "Launch", 86'399},
    {"4 hours", "Launch", 4 * 3600 + 309},
    {"59 min", "Launch", 59 * 60 + 59},
    {"59 s", "Launch", 59},
    {"done", "Launch", -5},
    {"since 5 s", "Launch", -5, true},
    {"since 2 d", "Grandmother's birthday", -2 * 86'400.0 - 8000, true},
};

CountdownSettings settingsOf(const CountdownCase& countdown) {
  return {galleryEvening + countdown.left, countdown.countsUpAfter};
}

void addClocks(GallerySheet& sheet, int span) {
  for (const auto& clock : clockCases()) {
    const auto reading = ClockReader(clock.settings, clock.calendar).at(clock.date);
    sheet.push_back({clock.name, span, [reading](const TileSize& size) {
                       return size.isWide() ? clockWideTile(reading, size)
                                            : clockTileIcon(reading, size);
                     }});
  }
}

void addCountdowns(GallerySheet& sheet, int span) {
  for (const auto& countdown : countdownCases)
    sheet.push_back({countdown.name, span, [countdown](const TileSize& size) {
                       return size.isWide()
                                  ? countdownWideTile(countdown.title, settingsOf(countdown),
                                                      galleryEvening, size)
                                  : countdownTileIcon(countdown.title, settingsOf(countdown),
                                                      galleryEvening, size);
                     }});
}

void addTimeProgress(GallerySheet& sheet, int span) {
  for (const auto scope : allTimeProgressScopes) {
    const auto reading = TimeProgressReading::at(morning, scope, german());
    sheet.push_back({std::string(title(scope)), span, [reading](const TileSize& size) {
                       return size.isWide() ? timeProgressWideTile(reading, size)
                                            : timeProgressTileIcon(reading, size);
                     }});
  }
  TimeProgressReading fresh{.scope = TimeProgressScope::year, .left = "365 days"};
  sheet.push_back({"100 %", span, [fresh](const TileSize& size) {
                     return size.isWide() ? timeProgressWideTile(fresh, size)
                                          : timeProgressTileIcon(fresh, size);
                   }});
}

GallerySheet sheetOf(std::initializer_list<int> spans) {
  GallerySheet sheet;
  for (const int span : spans) {
    addClocks(sheet, span);
    addCountdowns(sheet, span);
    addTimeProgress(sheet, span);
  }
  return sheet;
}

template <class Panel>
GalleryPanel panelOf(const char* name, const char* title, DockWidget::Kind kind, const QColor& tint,
                     Date now = galleryEvening) {
  return {name, tint, [=](const PanelAppearance& look) {
            return new Panel(look, systemStand(title, kind, now).model, [] {});
          }};
}

} // namespace

GallerySheet timeGallery() {
  return sheetOf({1});
}
GallerySheet timeWideGallery() {
  return sheetOf({2, 4});
}

GalleryPanels timePanels() {
  GalleryPanels panels;
  for (const auto& clock : clockCases())
    panels.push_back(
        panelOf<ClockPanelView>(clock.name, "Clock", clock.settings, clockTint, clock.date));
  for (const auto& countdown : countdownCases)
    panels.push_back(panelOf<CountdownPanelView>(countdown.name, countdown.title,
                                                 settingsOf(countdown), countdownAccent));
  for (const auto scope : allTimeProgressScopes)
    panels.push_back(panelOf<TimeProgressPanelView>("progress", "Time Progress",
                                                    TimeProgressSettings{scope},
                                                    timeProgressTint(scope), morning));
  return panels;
}

const GalleryEntry timeEntries[] = {
    {"time", timeGallery}, {"time-wide", timeWideGallery}, {"time-panels", timePanels}};

} // namespace tavrin
