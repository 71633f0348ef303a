#include "TavrinWidgetsUI/Files/ShelfViews.h"
#include "TavrinWidgetsUI/Kit/Pieces.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <algorithm>

namespace tavrin {

namespace {

constexpr QColor wall{0x33, 0x2A, 0x24};
constexpr QColor wallEnd{0x22, 0x1B, 0x17};
constexpr QColor board{0xD9, 0xA0, 0x5C};
constexpr QColor boardEdge{0x9C, 0x66, 0x2E};
/// Of the body's height: where the board lies, and how thick it is.
constexpr double boardTop = 0.74;
constexpr double boardHeight = 0.1;

AnyView plank(const TileSize& size) {
  const double body = size.body();
  return vstack({rectangle().fill(board).height(body * boardHeight * 0.55),
                 rectangle().fill(boardEdge).height(body * boardHeight * 0.45)})
      .spacing(0)
      .padding(Insets{0, body * boardTop, 0, 0})
      .fill(Alignment::top);
}

/// Things side by side with their feet on the board, as many as there is room for.
AnyView standing(const ShelfReading& reading, const TileSize& size, double room, double height) {
  const double gap = height * 0.12;
  std::vector<AnyView> row;
  double used = 0;
  for (const FileSheet& sheet : reading.sheets) {
    const double width = fileSheetWidth(sheet, height);
    if (!row.empty() && used + width > room)
      break;
    row.push_back(fileSheetView(sheet, height));
    used += width + gap;
  }
  return hstack(std::move(row))
      .spacing(gap)
      .align(Alignment::bottom)
      .padding(Insets{0, 0, 0, size.body() * (1 - boardTop)})
      .fill(size.isWide() ? Alignment::bottomLeading : Alignment::bottom);
}

AnyView countText(const ShelfReading& reading, const TileSize& size) {
  return text(QString::number(reading.count))
      .size(size.words(0.2))
      .weight(FontWeight::semibold)
      .colour(palette::figure(wall))
      .figure(minimumTypeSize);
}

AnyView warning(const TileSize& size) {
  return symbol("exclamationmark.triangle.fill")
      .colour(palette::warning)
      .size(std::max(size.body() * 0.16, 8.0));
}

/// Where things would stand.
AnyView emptyPlace(double side) {
  return zstack({roundedRectangle(side * 0.14)
                     .stroke(withOpacity(palette::white, 0.28), std::max(1.0, side * 0.05)),
                 symbol("plus").colour(withOpacity(palette::white, 0.55)).size(side * 0.5)})
      .frame(side, side);
}

QString spokenState(const ShelfReading& reading) {
  if (reading.count == 0)
    return worded("Empty");
  QStringList words{
      wordedPlural("{count} item", "{count} items", static_cast<long long>(reading.count))};
  if (reading.missing > 0)
    words << wordedPlural("{count} missing", "{count} missing",
                          static_cast<long long>(reading.missing));
  return joinedFacts(std::move(words));
}

} // namespace

AnyView shelfTileIcon(const ShelfReading& reading, const TileSize& size) {
  const double body = size.body();
  std::vector<AnyView> layers{rectangle().gradient(wall, wallEnd)};
  if (reading.count == 0) {
    layers.push_back(emptyPlace(body * 0.42)
                         .padding(Insets{0, 0, 0, body * (1 - boardTop + 0.07)})
                         .fill(Alignment::bottom));
  } else {
    layers.push_back(standing(reading, size, body * 0.86, body * (reading.count > 1 ? 0.4 : 0.5)));
    AnyView figure = reading.count > 1 ? AnyView(countText(reading, size)) : AnyView();
    if (reading.missing > 0)
      figure = hstack({warning(size), figure}).spacing(body * 0.03);
    layers.push_back(
        figure.padding(Insets{0, body * 0.06, body * 0.12, 0}).fill(Alignment::topTrailing));
  }
  layers.push_back(plank(size));
  return tile(wall, zstack(std::move(layers)), size)
      .accessibility(worded("Shelf"), spokenState(reading));
}

AnyView shelfWideTile(const ShelfReading& reading, const TileSize& size) {
  const double body = size.body();
  const double inset = body * 0.2;
  std::vector<AnyView> layers{rectangle().gradient(wall, wallEnd)};
  if (reading.count == 0) {
    layers.push_back(
        hstack({emptyPlace(body * 0.42),
                text(worded("Drop files")).size(size.words(0.2)).colour(palette::caption(wall))})
            .spacing(body * 0.16)
            .padding(Insets{inset, 0, inset, body * (1 - boardTop + 0.08)})
            .fill(Alignment::bottomLeading));
  } else {
    const double side = body * 0.52;
    const double words = body * (reading.missing > 0 ? 0.62 : 0.4);
    layers.push_back(standing(reading, size, size.bodyWidth() - inset - words, side)
                         .padding(Insets{inset * 0.8, 0, 0, 0}));
    AnyView figure = countText(reading, size);
    if (reading.missing > 0)
      figure = hstack({warning(size), figure}).spacing(body * 0.05);
    layers.push_back(figure.padding(Insets{0, body * 0.1, inset, body * (1 - boardTop)})
                         .fill(Alignment::trailing));
  }
  layers.push_back(plank(size));
  return tile(wall, zstack(std::move(layers)), size)
      .accessibility(worded("Shelf"), spokenState(reading));
}

} // namespace tavrin
