#include "TavrinWidgetsUI/Bookmarks/BookmarkViews.h"

#include "TavrinCore/Kinds/Bookmarks/BookmarkSettings.h"
#include "TavrinWidgetsUI/Kit/Utf8.h"
#include "TavrinWidgetsUI/Kit/Views/ViewRenderer.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <algorithm>
#include <functional>

namespace tavrin {
namespace {

constexpr QColor coverTop{0xCB, 0x3C, 0x46};
constexpr QColor coverBottom{0xA8, 0x2A, 0x4A};
/// Behind icons of all colours.
constexpr QColor shelfTop{0x38, 0x22, 0x2A};
constexpr QColor shelfBottom{0x1E, 0x14, 0x19};
constexpr double iconShare = 0.5;
constexpr double cellShare = 0.66;

/// The same for the same site.
QColor siteColour(const Bookmark& bookmark) {
  const auto address = WebAddress::from(bookmark.url);
  unsigned mixed = 2166136261U;
  for (const char character : address ? address->site() : bookmark.url)
    mixed = (mixed ^ static_cast<unsigned char>(character)) * 16777619U;
  return QColor::fromHsl(static_cast<int>(mixed % 360), 110, 105);
}

QString initial(const Bookmark& bookmark) {
  for (const auto character : utf8(displayTitle(bookmark)).toUcs4())
    if (QChar::isLetterOrNumber(character)) {
      const char32_t point = QChar::toUpper(character);
      return QString::fromUcs4(&point, 1);
    }
  return QStringLiteral("•");
}

QString countText(std::size_t count) {
  return wordedPlural("{count} link", "{count} links", static_cast<long long>(count));
}

/// A plate that makes every icon stand off its ground alike.
AnyView plate(const Bookmark& bookmark, const QImage& icon, double side) {
  if (icon.isNull())
    return bookmarkMonogram(bookmark, side);
  return image(icon)
      .frame(side * 0.7, side * 0.7)
      .frame(side, side)
      .background(roundedRectangle(side * 0.24).fill(QColor(0xF4, 0xF4, 0xF6)));
}

} // namespace

AnyView bookmarkMonogram(const Bookmark& bookmark, double side) {
  const QColor ground = siteColour(bookmark);
  return text(initial(bookmark))
      .size(side * 0.5)
      .weight(FontWeight::semibold)
      .colour(withContrast(palette::white, ground))
      .align(TextAlignment::centre)
      .frame(side, side)
      .background(roundedRectangle(side * 0.24).fill(ground));
}

QImage bookmarkMonogramImage(ViewRenderer& renderer, const Bookmark& bookmark, int side) {
  renderer.render(bookmarkMonogram(bookmark, side), QSizeF(side, side), 1);
  return renderer.image().copy();
}

AnyView bookmarkTileIcon(const BookmarkSettings& settings, const TileSize& size) {
  const auto count = allBookmarks(settings).size();
  const double body = size.body();
  std::vector<AnyView> parts{
      symbol("bookmark.fill").colour(palette::white).size(body * (size.hasCaption() ? 0.46 : 0.6))};
  if (size.hasCaption())
    parts.push_back(text(count == 0 ? worded("No links") : countText(count))
                        .size(size.caption())
                        .weight(FontWeight::medium)
                        .colour(palette::white)
                        .align(TextAlignment::centre)
                        .lines(2));
  const AnyView inner = vstack(std::move(parts))
                            .spacing(body * 0.05)
                            .padding(size.padding(), 0)
                            .fill()
                            .background(rectangle().gradient(coverTop, coverBottom));
  return tile(coverBottom, inner, size)
      .accessibility(worded("Bookmarks"), count == 0 ? worded("No links") : countText(count));
}

std::size_t bookmarkTileCapacity(const TileSize& size) {
  const double room = size.bodyWidth() - 2 * size.padding();
  return static_cast<std::size_t>(std::max(room / (size.body() * cellShare), 1.0));
}

AnyView bookmarkWideTile(const BookmarkSettings& settings, const TileSize& size,
                         const BookmarkIconOf& icon,
                         const std::function<void(const std::string& url)>& open) {
  auto places = allBookmarks(settings);
  if (places.empty()) {
    WideTileContent content;
    content.ground = coverTop;
    content.groundEnd = coverBottom;
    content.mark = symbol("bookmark.fill").colour(palette::white);
    content.caption = worded("Bookmarks");
    content.figure = worded("No links yet");
    content.widestFigure = content.figure;
    return wideTile(content, size);
  }
  places.resize(std::min(places.size(), bookmarkTileCapacity(size)));
  const double room = size.bodyWidth() - 2 * size.padding();
  const double cell = size.body() * cellShare;
  const double side = size.body() * iconShare;
  std::vector<AnyView> cells;
  for (const auto& place : places) {
    const Bookmark& bookmark = *bookmarkAt(settings, place);
    const std::string url = bookmark.url;
    const QString title = utf8(displayTitle(bookmark));
    AnyView shown = plate(bookmark, icon(url), side);
    if (size.side >= 80)
      shown = vstack({shown, text(title)
                                 .size(minimumTypeSize + 1)
                                 .weight(FontWeight::medium)
                                 .colour(palette::white)
                                 .align(TextAlignment::centre)
                                 .frame({.maxWidth = cell * 0.94})})
                  .spacing(size.body() * 0.04);
    cells.push_back(shown.frame(cell, size.body())
                        .button({"open " + url, [open, url] { open(url); }},
                                worded("Open {name}", {{"name", title}})));
  }
  const bool isFull = cells.size() >= bookmarkTileCapacity(size);
  const double gap = isFull ? (room - cell * static_cast<double>(cells.size())) /
                                  std::max(static_cast<double>(cells.size()) - 1, 1.0)
                            : 0;
  return called(tile(shelfBottom,
                     hstack(std::move(cells))
                         .spacing(gap)
                         .width(room, Alignment::leading)
                         .fill()
                         .background(rectangle().gradient(shelfTop, shelfBottom)),
                     size),
                worded("Bookmarks"), countText(allBookmarks(settings).size()));
}

} // namespace tavrin
