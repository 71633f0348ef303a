#include "Tools/Gallery/Gallery.h"

namespace tavrin {

namespace {

TileContent countdown(double progress, const char* figure, const QColor& tint) {
  return {.border = TileBorder{progress, tint}, .figure = QString::fromUtf8(figure)};
}

AnyView dots(const TileSize& size) {
  return progressDots(2, 4, palette::red, size.body() * 0.07, size.body() * 0.05);
}

AnyView dial(const TileSize& size) {
  const AnyView face = canvas(0.31, [](QPainter& painter, const QRectF& rect, const double& turn) {
    painter.translate(rect.center());
    painter.setPen(QPen(palette::white, rect.width() * 0.03, Qt::SolidLine, Qt::RoundCap));
    for (int tick = 0; tick < 12; ++tick) {
      painter.drawLine(QPointF(0, -rect.width() * 0.42), QPointF(0, -rect.width() * 0.36));
      painter.rotate(30);
    }
    painter.setPen(QPen(palette::orange, rect.width() * 0.04, Qt::SolidLine, Qt::RoundCap));
    painter.rotate(360 * turn);
    painter.drawLine(QPointF(0, 0), QPointF(0, -rect.width() * 0.3));
  });
  return tile(palette::ground, face, size);
}

void addWideTiles(GallerySheet& sheet) {
  for (const int span : {2, 3, 4})
    sheet.push_back({"wide", span, [](const TileSize& size) {
                       return wideTile(
                           {.border = TileBorder{0.4, palette::red},
                            .mark = symbol("timer").colour(palette::red),
                            .tint = palette::red,
                            .caption = QStringLiteral("Focus 2/4"),
                            .figure = QStringLiteral("24:59"),
                            .actions = {{{"toggle"}, "pause.fill", QStringLiteral("Pause"), true},
                                        {{"skip"}, "forward.end.fill", QStringLiteral("Skip")}}},
                           size);
                     }});
}

} // namespace

/// One entry a picture.
GallerySheet kitGallery() {
  GallerySheet sheet;
  const auto add = [&](const char* name, std::function<AnyView(const TileSize&)> view) {
    sheet.push_back({name, 1, std::move(view)});
  };
  const auto addTile = [&](const char* name, TileContent content) {
    add(name, [content](const TileSize& size) { return tile(content, size); });
  };
  addTile("border 0", countdown(0, "25:00", palette::red));
  addTile("border 0.01", countdown(0.01, "24:59", palette::red));
  add("dots", [](const TileSize& size) {
    TileContent content = countdown(0.4, "11:11", palette::red);
    content.mark = dots(size);
    content.markRatio = 0.07;
    content.isMarkBelow = true;
    content.caption = QStringLiteral("Focus");
    return tile(content, size);
  });
  addTile("border 1", countdown(1, "0:00", palette::green));
  addTile("hour", countdown(0.7, "1:00:00", palette::orange));
  addTile("long hours", countdown(0.7, "12:34:56", palette::orange));
  addTile("figure", {.figure = QStringLiteral("72%"),
                     .caption = QStringLiteral("left"),
                     .mark = symbol("bolt.fill").colour(palette::green)});
  addTile("long caption", {.ground = QColor(0x1E, 0x10, 0x35),
                           .groundEnd = QColor(0x4C, 0x1D, 0x95),
                           .figure = QStringLiteral("14d"),
                           .caption = QStringLiteral("Grandmother's birthday")});
  const TileContent weather{.ground = QColor(0x1C, 0x7E, 0xD6),
                            .groundEnd = QColor(0x0B, 0x3A, 0x80),
                            .figure = QStringLiteral("21°"),
                            .mark = symbol("cloud.sun.fill").colour(palette::white),
                            .markRatio = 0.36};
  addTile("weather", weather);
  for (const auto& [name, state] :
       {std::pair{"waiting", TileState::waiting}, std::pair{"cannot", TileState::cannot},
        std::pair{"done", TileState::done}}) {
    TileContent content{.mark = symbol("calendar").colour(palette::figure())};
    content.state = state;
    addTile(name, content);
  }
  add("dial", dial);
  add("ring", [](const TileSize& size) {
    return tile({.figure = QStringLiteral("64"), .mark = {}, .state = TileState::live}, size)
        .overlay(ring(0.64).tint(palette::teal).frame(size.body() * 0.8, size.body() * 0.8));
  });
  add("paper", [](const TileSize& size) {
    return tile(QColor(0xFB, 0xBF, 0x24),
                text("Milk, bread, a kilogram of unreasonably small potatoes, soap")
                    .size(std::max(size.body() * 0.13, 9.0))
                    .colour(palette::figure(QColor(0xFB, 0xBF, 0x24)))
                    .lines(4)
                    .padding(size.padding()),
                size);
  });
  addWideTiles(sheet);
  return sheet;
}

const GalleryEntry kitEntries[] = {{"kit", kitGallery}};

} // namespace tavrin
