#include "TavrinWidgetsUI/System/ActivityViews.h"

#include "TavrinWidgetsUI/Kit/Pieces.h"
#include "TavrinWidgetsUI/Kit/Views/Gauges.h"
#include "TavrinWidgetsUI/Kit/Words.h"

namespace tavrin {
namespace {

struct Gauge {
  QString name;
  QString shortName;
  double value = 0;
  QColor tint;
};

std::vector<Gauge> gauges(const ActivityReading& reading, const ActivitySettings& settings) {
  std::vector<Gauge> shown;
  if (settings.showsCPU)
    shown.push_back({worded("Processor"), "CPU", reading.cpu, cpuTint});
  if (settings.showsMemory)
    shown.push_back({worded("Memory"), "RAM", reading.memory, memoryTint});
  return shown;
}

QString spoken(const std::vector<Gauge>& shown) {
  QStringList parts;
  for (const auto& gauge : shown)
    parts << gauge.name + " " + percentText(gauge.value);
  return joinedFacts(std::move(parts));
}

Text figure(const Gauge& gauge, double points) {
  return text(percentText(gauge.value))
      .size(std::max(points, minimumTypeSize))
      .weight(FontWeight::semibold)
      .colour(palette::figure())
      .widest("88%")
      .align(TextAlignment::centre)
      .figure(minimumTypeSize);
}

Text caption(const Gauge& gauge, const TileSize& size, double ratio) {
  return text(gauge.shortName)
      .size(size.words(ratio))
      .weight(FontWeight::medium)
      .colour(size.quietInk())
      .align(TextAlignment::centre);
}

AnyView barsTile(const std::vector<Gauge>& shown, const TileSize& size) {
  const double width = size.body() * (shown.size() > 1 ? 0.17 : 0.24);
  const double height = size.body() * (size.hasCaption() ? 0.52 : 0.66);
  std::vector<AnyView> columns;
  for (const auto& gauge : shown) {
    const AnyView column =
        bar(gauge.value).tint(gauge.tint).track(palette::track).frame(width, height);
    columns.push_back(size.hasCaption() ? vstack({column, caption(gauge, size, 0.128)})
                                              .spacing(size.body() * 0.05)
                                              .width(size.body() * 0.43)
                                        : column);
  }
  return tile(palette::ground,
              hstack(std::move(columns)).spacing(size.hasCaption() ? 0 : size.body() * 0.14), size);
}

AnyView numbersTile(const std::vector<Gauge>& shown, const TileSize& size) {
  std::vector<AnyView> rows;
  for (const auto& gauge : shown) {
    const bool isAlone = shown.size() == 1;
    const bool hasName = isAlone ? size.hasCaption() : size.side >= 84;
    const AnyView number = figure(gauge, size.body() * (isAlone && hasName ? 0.3 : 0.24))
                               .align(hasName ? TextAlignment::centre : TextAlignment::trailing)
                               .widest("100%");
    const double dot = size.body() * 0.085;
    rows.push_back(hasName
                       ? vstack({number, caption(gauge, size, 0.115)
                                             .colour(withContrast(gauge.tint, palette::ground))})
                       : hstack({circle().fill(gauge.tint).frame(dot, dot), number})
                             .spacing(size.body() * 0.06));
  }
  return tile(palette::ground, vstack(std::move(rows)).spacing(size.body() * 0.035), size);
}

AnyView ringsTile(const std::vector<Gauge>& shown, const TileSize& size) {
  const double thickness = size.body() * 0.11;
  double diameter = size.body() * 0.84;
  std::vector<AnyView> rings;
  for (const auto& gauge : shown) {
    rings.push_back(GaugeRing{gauge.value, gauge.tint, palette::track, thickness}.view().frame(
        diameter, diameter));
    diameter -= 2.5 * thickness;
  }
  if (shown.size() == 1)
    rings.push_back(text(gaugeText(shown.front().value, size))
                        .size(size.words(0.22))
                        .weight(FontWeight::semibold)
                        .colour(palette::figure())
                        .align(TextAlignment::centre)
                        .figure(minimumTypeSize));
  else if (size.side >= 84)
    rings.push_back(symbol("cpu").colour(palette::caption()).size(size.body() * 0.15));
  return tile(palette::ground, zstack(std::move(rings)), size);
}

AnyView emptyTile(const TileSize& size) {
  TileContent content;
  content.mark = symbol("cpu").colour(palette::caption());
  content.label = worded("Activity");
  content.value = worded("Nothing to show");
  return tile(content, size);
}

/// Level and number of one gauge in a row of a wide tile, after its name or without it.
AnyView wideRow(const Gauge& gauge, bool hasName, const TileSize& size) {
  const double points = size.words(0.19);
  const AnyView name =
      caption(gauge, size, 0.19).align(TextAlignment::leading).widest("CPU").figure();
  return hstack({hasName ? name : AnyView(),
                 bar(gauge.value).tint(gauge.tint).track(palette::track).height(size.body() * 0.09),
                 figure(gauge, points * 1.1).widest("100%").align(TextAlignment::trailing)})
      .spacing(size.body() * 0.1);
}

} // namespace

AnyView activityTileIcon(const ActivityReading& reading, const ActivitySettings& settings,
                         const TileSize& size) {
  const auto shown = gauges(reading, settings);
  if (shown.empty())
    return emptyTile(size);
  const auto make = settings.style == ActivityTileStyle::numbers ? numbersTile
                    : settings.style == ActivityTileStyle::rings ? ringsTile
                                                                 : barsTile;
  return make(shown, size).accessibility(worded("Activity"), spoken(shown));
}

AnyView activityWideTile(const ActivityReading& reading, const ActivitySettings& settings,
                         const TileSize& size) {
  const auto shown = gauges(reading, settings);
  WideTileContent content;
  content.label = worded("Activity");
  content.value = shown.empty() ? worded("Nothing to show") : spoken(shown);
  if (settings.style == ActivityTileStyle::rings && !shown.empty()) {
    const double outer = size.body() * 0.6;
    std::vector<AnyView> rings;
    double diameter = outer;
    for (const auto& gauge : shown) {
      rings.push_back(GaugeRing{gauge.value, gauge.tint, palette::track, outer * 0.14}.view().frame(
          diameter, diameter));
      diameter -= outer * 0.36;
    }
    content.mark = zstack(std::move(rings));
  } else if (size.span > 2 || shown.empty()) {
    content.mark = symbol("cpu").colour(palette::caption());
  }
  const bool isTight = settings.style == ActivityTileStyle::rings && size.span == 2;
  const double points = size.body() * (isTight ? 0.21 : 0.25);
  const auto lines = [&](bool hasName) -> AnyView {
    std::vector<AnyView> rows;
    for (const auto& gauge : shown) {
      if (settings.style == ActivityTileStyle::bars) {
        rows.push_back(wideRow(gauge, hasName, size));
        continue;
      }
      const double dot = size.body() * 0.12;
      const AnyView name = caption(gauge, size, points * 0.76 / size.body())
                               .align(TextAlignment::leading)
                               .colour(withContrast(gauge.tint, palette::ground))
                               .figure();
      rows.push_back(
          hstack({hasName ? name : AnyView(circle().fill(gauge.tint).frame(dot, dot)), spacer(),
                  figure(gauge, points).widest("100%").align(TextAlignment::trailing)}));
    }
    return vstack(std::move(rows)).spacing(size.body() * 0.1).fillWidth();
  };
  // A name cut to its first letter says less than its colour.
  content.middle = shown.empty()
                       ? AnyView(text(worded("Activity")).size(points).colour(palette::caption()))
                       : AnyView(firstFitting({lines(true), lines(false)}));
  return wideTile(content, size);
}

} // namespace tavrin
