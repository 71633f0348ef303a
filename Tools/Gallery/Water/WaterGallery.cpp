#include "TavrinCore/Kinds/Water/WaterSettings.h"
#include "TavrinSettings/Samples/SampleValues.h"
#include "TavrinWidgetsUI/Water/WaterPanelView.h"
#include "TavrinWidgetsUI/Water/WaterViews.h"
#include "Tools/Gallery/Gallery.h"

namespace tavrin {
namespace {

/// Wednesday, 9 September 2026, 22:08:42 in Berlin.

struct WaterCase {
  const char* name;
  WaterSettings settings;
  int drunk;
  double minutesAgo;
  double swell = 0;
};

std::vector<WaterCase> waterCases() {
  std::vector<WaterCase> cases;
  for (const auto style : {WaterTileStyle::tank, WaterTileStyle::glass}) {
    WaterSettings plain;
    plain.style = style;
    cases.push_back({"empty", plain, 0, 0});
    cases.push_back({"poured", plain, 250, 0});
    cases.push_back({"half", plain, 1000, 20});
    cases.push_back({"low", plain, 1250, 40});
    cases.push_back({"dry", plain, 1500, 50});
    cases.push_back({"done", plain, 2250, 30});
    cases.push_back({"moving", plain, 1000, 12, 0.6});
    WaterSettings ounces = plain;
    ounces.unit = WaterUnit::ounces;
    ounces.showsCountOnTile = false;
    cases.push_back({"ounces", ounces, 500, 15});
    cases.push_back({"oz done", ounces, 2000, 15});
    WaterSettings many = plain;
    many.goal = 6000;
    many.glass = 50;
    cases.push_back({"99/120", many, 4950, 10});
  }
  return cases;
}

WaterReading readingOf(const WaterCase& water) {
  const Calendar calendar("Europe/Berlin", "en_GB");
  const auto log = samples::water(water.drunk, water.minutesAgo, galleryEvening, calendar);
  return WaterReading::of(log, water.settings, galleryEvening, calendar);
}

WaterTank tankOf(const WaterCase& water) {
  WaterTank tank = waterTankOf(readingOf(water));
  tank.swell = water.swell;
  return tank;
}

} // namespace

GallerySheet waterGallery() {
  GallerySheet sheet;
  for (const int span : {1, 2, 3})
    for (const auto& water : waterCases())
      sheet.push_back({water.name, span, [water](const TileSize& size) {
                         return size.isWide()
                                    ? waterWideTile(readingOf(water), tankOf(water), size, {})
                                    : waterTileIcon(readingOf(water), tankOf(water), size);
                       }});
  return sheet;
}

GalleryPanels waterPanels() {
  GalleryPanels panels;
  for (const auto& water : waterCases())
    panels.push_back({water.name, waterTint, [water](const PanelAppearance& look) {
                        return new WaterPanelView(look, {[] { return std::string("Water"); },
                                                         [water] { return readingOf(water); },
                                                         [water] { return tankOf(water); }, [] {},
                                                         [] {}, [] {}});
                      }});
  return panels;
}

const GalleryEntry waterEntries[] = {{"water", waterGallery}, {"water-panels", waterPanels}};

} // namespace tavrin
