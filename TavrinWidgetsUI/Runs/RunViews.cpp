#include "TavrinWidgetsUI/Runs/RunViews.h"

namespace tavrin {

QString widestClockText(const QString& text) {
  return text.size() < 5 ? QStringLiteral("88:88") : widestDigits(text);
}

QColor runTint(const QColor& tint, bool isRunning, const QColor& ground) {
  const QColor visible = withContrast(tint, ground, 3);
  return isRunning ? visible : mix(visible, ground, 0.45);
}

AnyView wideRunText(const std::vector<QStringList>& captions, const QString& time,
                    const TileSize& size) {
  std::vector<AnyView> candidates;
  for (const QStringList& lines : captions) {
    const double points = size.words(lines.size() > 1 ? 0.17 : 0.19);
    std::vector<AnyView> column;
    for (const QString& line : lines)
      column.push_back(text(line)
                           .size(points)
                           .weight(FontWeight::medium)
                           .colour(size.quietInk())
                           .figure(std::max(points * 0.85, size.words(0))));
    candidates.push_back(
        vstack(std::move(column)).align(Alignment::leading).spacing(points * 0.22));
  }
  const AnyView figure = text(time)
                             .size(size.figure())
                             .weight(FontWeight::semibold)
                             .colour(palette::figure())
                             .widest(widestClockText(time))
                             .figure(std::max(size.body() * 0.22, minimumTypeSize));
  return vstack({firstFitting(std::move(candidates)), figure})
      .align(Alignment::leading)
      .spacing(size.body() * 0.05);
}

AnyView wideRunTile(WideTileContent content, double progress, bool isRunning,
                    const std::string& symbol, const TileSize& size) {
  const QColor tint = runTint(content.tint, isRunning);
  const double room = size.body() - 2 * size.padding();
  if (size.span > 2)
    content.mark = ring(progress)
                       .tint(tint)
                       .track(palette::track)
                       .thickness(size.borderWidth() * 1.15)
                       .overlay(tavrin::symbol(symbol).colour(tint).size(room * 0.42));
  else
    content.border = TileBorder{progress, tint};
  return wideTile(content, size);
}

AnyView PanelGauge::view() const {
  const AnyView figure = text(time)
                             .size(side * 0.23)
                             .weight(FontWeight::semibold)
                             .colour(ink)
                             .widest(widestClockText(time))
                             .align(TextAlignment::centre)
                             .figure()
                             .frame({.maxWidth = side * 0.76});
  const AnyView level = ring(progress).tint(tint).track(track).thickness(side * 0.05);
  return zstack({level, figure, above.offset(0, -side * 0.21), below.offset(0, side * 0.2)})
      .frame(side, side);
}

} // namespace tavrin
