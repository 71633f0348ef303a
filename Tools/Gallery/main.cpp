#include "Tools/Gallery/Checks.h"
#include "Tools/Gallery/Gallery.h"

#include "TavrinPlatform/Files/TextsFile.h"
#include "TavrinPlatform/Qt/QtTextLocale.h"
#include "TavrinWidgetsUI/Kit/Pictures/Symbols.h"
#include "TavrinWidgetsUI/Kit/Views/ViewRenderer.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QApplication>
#include <QDir>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fmt/format.h>

namespace tavrin {

namespace {

constexpr double captionHeight = 16;
constexpr double gap = 8;

bool save(const QImage& image, const QString& path) {
  if (image.save(path)) {
    std::printf("%s\n", qPrintable(path));
    return true;
  }
  std::fprintf(stderr, "Failed to write %s\n", qPrintable(path));
  return false;
}

/// All tiles of a sheet at one size and scale, in rows, on a ground like a desktop's picture.
QImage contactSheet(const GallerySheet& tiles, double side, double scale) {
  const double rowWidth = std::max(8 * (side + gap), 560.0);
  std::vector<AnyView> rows;
  std::vector<AnyView> row;
  double used = 0;
  const auto finishRow = [&] {
    if (!row.empty())
      rows.push_back(hstack(std::exchange(row, {})).spacing(gap).align(Alignment::topLeading));
    used = 0;
  };
  for (const GalleryTile& tile : tiles) {
    const TileSize size{side, tile.span};
    if (used + size.width() > rowWidth)
      finishRow();
    used += size.width() + gap;
    row.push_back(vstack({tile.view(size).frame(size.width(), size.height()),
                          text(tile.name).size(9).colour(palette::white).width(size.width())}));
  }
  finishRow();
  const double height = double(rows.size()) * (side + captionHeight + gap) + gap;
  const AnyView sheet =
      vstack(rows)
          .align(Alignment::leading)
          .spacing(gap)
          .padding(gap)
          .fill(Alignment::topLeading)
          .background(rectangle().gradient(QColor(0x6F, 0x8F, 0xB5), QColor(0x9A, 0x86, 0xA8)));
  ViewRenderer renderer;
  renderer.render(sheet, {rowWidth + 2 * gap, height}, scale);
  return renderer.image().copy();
}

/// All panels of a sheet side by side, in rows, at 2 pixels a point.
QImage panelSheet(const GalleryPanels& panels, bool dark) {
  constexpr int rowWidth = 1280;
  constexpr int scale = 2;
  std::vector<std::pair<QPoint, QPixmap>> placed;
  QPoint next(16, 16);
  int rowHeight = 0;
  for (const GalleryPanel& made : panels) {
    const std::unique_ptr<PanelView> panel = laidOut(made, {dark, false, made.tint});
    QPixmap picture(panel->size() * scale);
    picture.setDevicePixelRatio(scale);
    picture.fill(panel->colours().ground);
    panel->render(&picture);
    if (next.x() + panel->width() > rowWidth) {
      next = {16, next.y() + rowHeight + 16};
      rowHeight = 0;
    }
    placed.emplace_back(next, picture);
    next.rx() += panel->width() + 16;
    rowHeight = std::max(rowHeight, panel->height());
  }
  QImage sheet(QSize(rowWidth, next.y() + rowHeight + 16) * scale, QImage::Format_RGB32);
  sheet.setDevicePixelRatio(scale);
  sheet.fill(dark ? QColor(0, 0, 0) : QColor(0xC8, 0xCC, 0xD2));
  QPainter painter(&sheet);
  for (const auto& [place, picture] : placed)
    painter.drawPixmap(place, picture);
  return sheet;
}

GallerySheet symbolSheet() {
  GallerySheet tiles;
  for (const std::string_view name : symbolNames())
    tiles.push_back({std::string(name), 1, [name](const TileSize& size) {
                       return symbol(std::string(name))
                           .padding(size.side / 8)
                           .background(roundedRectangle(6).fill(palette::ground));
                     }});
  return tiles;
}

} // namespace

} // namespace tavrin

/// tavrin-gallery FOLDER [SHEET...]
/// tavrin-gallery --cut         tells which texts do not stand whole
/// tavrin-gallery --contrast    tells which texts have less than 4.5 on what they stand on
int main(int argc, char** argv) {
  using namespace tavrin;
  QApplication application(argc, argv);
  // TAVRIN_LANGUAGE=de shows all of it in German.
  loadTexts();
  setTextLocale();
  const QStringList arguments = application.arguments();
  if (arguments.size() < 2) {
    std::fprintf(stderr, "usage: tavrin-gallery FOLDER [SHEET...] | --cut | --contrast\n");
    return 2;
  }
  if (arguments[1] == QStringLiteral("--cut"))
    return tellAllCut() > 0 ? 1 : 0;
  if (arguments[1] == QStringLiteral("--contrast"))
    return tellContrast() > 0 ? 1 : 0;
  const QDir folder(arguments[1]);
  if (!folder.mkpath(QStringLiteral("."))) {
    std::fprintf(stderr, "Failed to make %s\n", qPrintable(folder.path()));
    return 1;
  }
  const QStringList wanted = arguments.mid(2);
  const auto isWanted = [&](const QString& name) {
    return wanted.isEmpty() || wanted.contains(name);
  };
  bool isComplete = true;
  if (isWanted(QStringLiteral("symbols")))
    for (const double side : {24.0, 64.0})
      isComplete &= save(contactSheet(symbolSheet(), side, 2),
                         folder.filePath(QStringLiteral("symbols-%1.png").arg(side)));
  for (const NamedSheet& sheet : gallerySheets()) {
    if (!isWanted(QString::fromUtf8(sheet.name)))
      continue;
    const GallerySheet tiles = sheet.tiles();
    for (const double side : {44.0, 48.0, 64.0, 128.0})
      for (const double scale : {1.0, 2.0})
        isComplete &= save(contactSheet(tiles, side, scale),
                           folder.filePath(QStringLiteral("%1-%2@%3.png")
                                               .arg(QString::fromUtf8(sheet.name))
                                               .arg(side)
                                               .arg(scale)));
  }
  for (const NamedPanels& panels : galleryPanels()) {
    const QString name = QString::fromUtf8(panels.name);
    if (!isWanted(name))
      continue;
    for (const bool dark : {false, true})
      isComplete &= save(panelSheet(panels.panels(), dark),
                         folder.filePath(name + (dark ? "-dark.png" : "-light.png")));
  }
  return isComplete ? 0 : 1;
}
