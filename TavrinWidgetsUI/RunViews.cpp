#include "TavrinWidgetsUI/RunViews.h"

namespace tavrin {

QString widestClockText(const QString& text) {
  return text.size() < 5 ? QStringLiteral("88:88") : widestDigits(text);
}

QColor runTint(const QColor& tint, bool isRunning, const QColor& ground) {
  const QColor visible = withContrast(tint, ground, 3);
  return isRunning ? visible : mix(visible, ground, 0.45);
}

AnyView wideRunTile(WideTileContent content, double progress, const QColor& tint,
                    const std::string& symbol, const TileSize& size) {
  content.tint = tint;
  const double room = size.body() - 2 * size.padding();
  if (size.span > 2) {
    const AnyView gauge = ring(progress)
                              .tint(tint)
                              .track(palette::track)
                              .thickness(size.borderWidth() * 1.15)
                              .overlay(tavrin::symbol(symbol).colour(tint).size(room * 0.42));
    content.mark = gauge;
  } else {
    content.border = TileBorder{progress, tint};
  }
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
