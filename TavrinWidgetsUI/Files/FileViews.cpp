#include "TavrinWidgetsUI/Files/FileViews.h"
#include "TavrinWidgetsUI/Kit/Pieces.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <algorithm>

namespace tavrin {

namespace {

constexpr QColor ground{0x2A, 0x4B, 0x86};
constexpr QColor groundEnd{0x19, 0x2C, 0x54};
constexpr QColor badgeRed{0xC8, 0x1E, 0x3C};

AnyView badge(const QString& count, double body) {
  const double height = std::max(body * 0.27, 13.0);
  return text(count)
      .size(std::max(height * 0.62, minimumTypeSize))
      .weight(FontWeight::semibold)
      .colour(palette::white)
      .padding(height * 0.26, 0)
      .frame({.minWidth = height, .minHeight = height, .maxHeight = height})
      .background(capsule().fill(badgeRed));
}

/// The newest sheet in front, the two before it fanned out behind.
AnyView fan(const FilesReading& reading, double height) {
  std::vector<AnyView> layers;
  const auto count = std::min(reading.files.size(), mostTileFiles);
  for (std::size_t i = count; i-- > 0;) {
    if (i == 0) {
      const FileSheet& sheet = reading.files.front().sheet;
      // A wide picture is made less high, so that it keeps off the tile's edges.
      const double width = fileSheetWidth(sheet, height);
      layers.push_back(fileSheetView(sheet, height * std::min(1.0, height / width)));
      continue;
    }
    // Of those behind only an edge is seen.
    const double side = i == 1 ? 1 : -1;
    layers.push_back(roundedRectangle(height * 0.08)
                         .fill(mix(QColor(0xF6, 0xF6, 0xF3), ground, 0.22 + 0.14 * double(i)))
                         .frame(height * 0.74, height * 0.94)
                         .rotation(side * 9)
                         .offset(side * height * 0.13, height * 0.01)
                         .unmirrored());
  }
  return zstack(std::move(layers));
}

AnyView emptyMark(const FilesReading& reading, double side) {
  if (reading.hasTrouble)
    return symbol("exclamationmark.triangle.fill").colour(palette::warning).size(side);
  return symbol("folder.fill")
      .colour(withOpacity(palette::white, reading.isKnown ? 0.6 : 0.3))
      .size(side);
}

QString stateWords(const FilesReading& reading) {
  if (!reading.isKnown)
    return worded("Looking");
  if (reading.hasTrouble)
    return worded("Cannot be listed");
  if (reading.files.empty())
    return reading.unfinished > 0 ? worded("Downloading") : worded("No files");
  QStringList words{reading.files.front().title};
  if (reading.unseen > 0)
    words << worded("{unseen} new",
                    {{"unseen", unseenText(reading.unseen, reading.hasMoreUnseen)}});
  return joinedFacts(std::move(words));
}

} // namespace

QString unseenText(std::size_t count, bool hasMore) {
  constexpr std::size_t most = 99;
  const QString number = QString::number(std::min(count, most));
  return hasMore || count > most ? number + '+' : number;
}

AnyView filesTileIcon(const FilesReading& reading, const TileSize& size) {
  const double body = size.body();
  std::vector<AnyView> layers{rectangle().gradient(ground, groundEnd)};
  if (reading.files.empty() || reading.hasTrouble)
    layers.push_back(emptyMark(reading, body * 0.46).fill());
  else
    layers.push_back(fan(reading, body * 0.64).fill());
  if (reading.unfinished > 0)
    layers.push_back(zstack({circle().fill(palette::ground),
                             symbol("arrow.down").colour(palette::white).size(body * 0.16)})
                         .frame(body * 0.26, body * 0.26)
                         .padding(body * 0.05)
                         .fill(Alignment::bottomTrailing));
  if (reading.unseen > 0)
    layers.push_back(badge(unseenText(reading.unseen, reading.hasMoreUnseen), body)
                         .padding(Insets{0, body * 0.05, body * 0.05, 0})
                         .fill(Alignment::topTrailing));
  return tile(ground, zstack(std::move(layers)), size)
      .accessibility(worded("Files"), stateWords(reading));
}

AnyView filesWideTile(const FilesReading& reading, const TileSize& size,
                      const std::function<void()>& open) {
  const double body = size.body();
  WideTileContent content;
  content.ground = ground;
  content.groundEnd = groundEnd;
  content.tint = filesTint;
  content.label = worded("Files");
  content.value = stateWords(reading);
  const QColor quiet = palette::caption(mix(ground, groundEnd, 0.5));
  if (reading.files.empty() || reading.hasTrouble) {
    content.mark = emptyMark(reading, body * 0.5);
    content.middle = text(stateWords(reading)).size(size.words(0.2)).colour(quiet).lines(2);
    return wideTile(content, size);
  }
  const auto& newest = reading.files.front();
  content.mark = fan(reading, body * 0.6);
  QStringList about{newest.moment};
  if (reading.unseen > 0)
    about.prepend(
        worded("{unseen} new", {{"unseen", unseenText(reading.unseen, reading.hasMoreUnseen)}}));
  // A figure is never cut.
  if (size.span > about.size() + 1)
    about << newest.bytes;
  if (reading.unfinished > 0)
    about = {worded("Downloading {count}", {{"count", reading.unfinished}})};
  content.middle = vstack({text(newest.title)
                               .fileName()
                               .size(size.words(0.22))
                               .weight(FontWeight::semibold)
                               .colour(palette::figure(ground)),
                           text(joinedPieces(about)).size(size.words(0.17)).colour(quiet)})
                       .align(Alignment::leading)
                       .spacing(body * 0.05);
  content.actions.push_back(
      {{"open", open}, "arrow.up.right", worded("Open {name}", {{"name", newest.title}}), false});
  return wideTile(content, size);
}

} // namespace tavrin
