#include "TavrinWidgetsUI/Collection/CollectionViews.h"

#include "TavrinWidgetsUI/Kit/Pieces.h"
#include "TavrinWidgetsUI/Kit/Views/GradientGround.h"
#include "TavrinWidgetsUI/Kit/Views/ViewRenderer.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <algorithm>
#include <cmath>

namespace tavrin {
namespace {

constexpr QColor ground{0x2B, 0x31, 0x3B};
constexpr int mostSquare = 9;
constexpr int mostInLine = 4;
constexpr double squareInset = 0.13;
constexpr double goneOpacity = 0.35;
/// The most room between two icons of a row, in icons.
constexpr double loosest = 0.5;

/// A letter on a plate, which alone grows faint where the application is gone.
AnyView monogram(const QString& name, double side, bool isGone) {
  constexpr int hues = 12;
  const auto hue = static_cast<int>(qHash(name, 0) % hues) * (360 / hues);
  const QColor colour = QColor::fromHsl(hue, 110, 120);
  const double faded = isGone ? 1 - goneOpacity : 0;
  const GradientGround plate =
      GradientGround{mix(colour, ground, faded), mix(colour.darker(135), ground, faded)}.legible();
  const QString letter = name.isEmpty() ? QStringLiteral("?") : name.left(1).toUpper();
  return zstack({superellipse(side * bodyCornerRatio).gradient(plate.from, plate.to),
                 text(letter)
                     .size(side * 0.55)
                     .weight(FontWeight::semibold)
                     .colour(isGone ? palette::caption(plate.harder()) : palette::white)
                     .figure(4)})
      .frame(side, side);
}

AnyView appIcon(const CollectionTileApp& app, double side) {
  if (app.icon.isNull())
    return monogram(app.name, side, app.isGone);
  const AnyView picture = AnyView(image(app.icon)).frame(side, side);
  return app.isGone ? picture.opacity(goneOpacity) : picture;
}

/// The cell that says how many there is no room for.
AnyView more(std::size_t count, double side) {
  return text(QStringLiteral("+%1").arg(count))
      .size(std::max(side * 0.55, minimumTypeSize))
      .weight(FontWeight::semibold)
      .colour(palette::caption(ground))
      .figure(minimumTypeSize)
      .frame(side, side);
}

AnyView rowsOf(std::vector<AnyView> cells, const CollectionCells& form) {
  std::vector<AnyView> rows;
  const auto columns = static_cast<std::size_t>(form.columns);
  for (std::size_t i = 0; i < cells.size(); i += columns) {
    const auto end = std::min(i + columns, cells.size());
    rows.push_back(hstack({cells.begin() + static_cast<std::ptrdiff_t>(i),
                           cells.begin() + static_cast<std::ptrdiff_t>(end)})
                       .spacing(form.gap));
  }
  return vstack(std::move(rows)).spacing(form.gap).align(Alignment::leading);
}

QString listed(const std::vector<CollectionTileApp>& apps) {
  QStringList names;
  for (const auto& app : apps)
    names << (app.isGone ? worded("{name}, not installed", {{"name", app.name}}) : app.name);
  return joinedFacts(std::move(names));
}

AnyView emptyMark(double side) {
  return symbol("square.grid.2x2.fill").colour(withContrast(collectionTint, ground)).size(side);
}

AnyView named(const CollectionTileApp& app, const CollectionCells& form, double width,
              const TileSize& size) {
  return hstack({appIcon(app, form.side),
                 text(app.name)
                     .size(size.words(0.19))
                     .weight(FontWeight::medium)
                     .colour(app.isGone ? palette::caption(ground) : palette::figure(ground))
                     .frame({.maxWidth = width - form.side - form.gap}, Alignment::leading)})
      .spacing(form.gap * 0.8)
      .width(width, Alignment::leading);
}

} // namespace

CollectionCells CollectionCells::of(CollectionLayout layout, int count, const TileSize& size) {
  CollectionCells cells;
  const double body = size.body();
  count = std::max(count, 1);
  if (!size.isWide()) {
    const double inner = body * (1 - 2 * squareInset);
    const int shown = std::min(count, layout == CollectionLayout::grid ? mostSquare : mostInLine);
    cells.columns = tavrin::columns(layout, shown);
    cells.rows = (shown + cells.columns - 1) / cells.columns;
    const int most = std::max(cells.columns, cells.rows);
    cells.gap = most == 1 ? 0 : inner * (most == 2 ? 0.09 : 0.07);
    cells.side = (inner - (most - 1) * cells.gap) / most;
    return cells;
  }
  const double width = size.bodyWidth() - 2 * size.padding();
  const double height = body - 2 * size.padding();
  cells.gap = body * 0.09;
  const double least = (height - cells.gap) / 2;
  if (layout == CollectionLayout::vertical) {
    cells.hasNames = true;
    cells.rows = count == 1 ? 1 : 2;
    cells.side = least;
    cells.columns = std::max(1, static_cast<int>(width / (body * 1.55)));
    return cells;
  }
  // The rows that leave the icons largest.
  const auto columnsIn = [&](int rows) { return (count + rows - 1) / rows; };
  const auto sideIn = [&](int rows) {
    return std::min((height - (rows - 1) * cells.gap) / rows,
                    (width - (columnsIn(rows) - 1) * cells.gap) / columnsIn(rows));
  };
  cells.rows = layout == CollectionLayout::horizontal || sideIn(1) >= sideIn(2) ? 1 : 2;
  const bool hasRoom = sideIn(cells.rows) >= least;
  cells.side = hasRoom ? sideIn(cells.rows) : least;
  cells.columns = hasRoom
                      ? columnsIn(cells.rows)
                      : std::max(1, static_cast<int>((width + cells.gap) / (least + cells.gap)));
  // A single row takes the whole width, as far as it still looks like one.
  if (cells.rows == 1 && cells.columns > 1) {
    const double free = (width - cells.columns * cells.side) / (cells.columns - 1);
    cells.gap = std::clamp(free, cells.gap, std::max(cells.gap, cells.side * loosest));
  }
  return cells;
}

AnyView appMonogram(const QString& name, double side) {
  return monogram(name, side, false);
}

QImage appMonogramImage(const QString& name, int points, int scale) {
  ViewRenderer renderer;
  renderer.render(appMonogram(name, points), QSizeF(points, points), scale);
  return renderer.image().copy();
}

AnyView collectionTileIcon(const std::vector<CollectionTileApp>& apps, CollectionLayout layout,
                           const TileSize& size, const QString& name) {
  if (apps.empty())
    return tile(TileContent{.ground = ground,
                            .caption = worded("No apps"),
                            .mark = emptyMark(size.body() * 0.42),
                            .markRatio = 0.42,
                            .label = name,
                            .value = worded("No apps yet")},
                size);
  const auto form = CollectionCells::of(layout, static_cast<int>(apps.size()), size);
  const auto room = static_cast<std::size_t>(form.room());
  const bool isCut = apps.size() > room && form.side >= 11;
  std::vector<AnyView> cells;
  for (std::size_t i = 0; i < apps.size() && i < room; ++i)
    cells.push_back(isCut && i + 1 == room ? more(apps.size() - i, form.side)
                                           : appIcon(apps[i], form.side));
  return tile(ground, rowsOf(std::move(cells), form), size).accessibility(name, listed(apps));
}

AnyView collectionWideTile(const std::vector<CollectionTileApp>& apps, CollectionLayout layout,
                           const TileSize& size, const QString& name,
                           const std::function<void(std::size_t)>& open,
                           const std::function<void()>& add) {
  if (apps.empty()) {
    WideTileContent content;
    content.ground = ground;
    content.tint = collectionTint;
    content.mark = emptyMark(size.body() * 0.5);
    content.caption = name;
    content.figure = worded("No apps");
    content.actions = {{{"add", add}, "plus", worded("Add apps"), true}};
    return wideTile(content, size);
  }
  const auto form = CollectionCells::of(layout, static_cast<int>(apps.size()), size);
  const auto room = static_cast<std::size_t>(form.room());
  const double width =
      (size.bodyWidth() - 2 * size.padding() - (form.columns - 1) * form.gap) / form.columns;
  // Of two names neither makes way for a number.
  const bool isCut = apps.size() > room && !(form.hasNames && room <= 2);
  std::vector<AnyView> cells;
  for (std::size_t i = 0; i < apps.size() && i < room; ++i) {
    if (isCut && i + 1 == room) {
      const AnyView count = more(apps.size() - i, form.side);
      cells.push_back(form.hasNames ? AnyView(count.width(width, Alignment::leading)) : count);
      break;
    }
    const AnyView cell =
        form.hasNames ? named(apps[i], form, width, size) : appIcon(apps[i], form.side);
    const ViewAction action{QStringLiteral("open %1 %2").arg(i).arg(apps[i].name).toStdString(),
                            [open, i] { open(i); }};
    cells.push_back(cell.button(
        action, apps[i].isGone ? worded("{name}, not installed", {{"name", apps[i].name}})
                               : worded("Open {name}", {{"name", apps[i].name}})));
  }
  return called(tile(ground,
                     rowsOf(std::move(cells), form)
                         .fill(form.hasNames ? Alignment::leading : Alignment::centre)
                         .padding(size.padding()),
                     size),
                name, listed(apps));
}

} // namespace tavrin
