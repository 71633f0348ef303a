#include "TavrinWidgetsUI/Clipboard/ClipboardViews.h"
#include "TavrinCore/Text/DecimalText.h"
#include "TavrinWidgetsUI/Kit/Pieces.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <algorithm>
#include <cmath>

namespace tavrin {
namespace {

constexpr const char* loadingText = marked("Loading clipboard");
constexpr QColor board{0x2B, 0x35, 0x52};
constexpr QColor boardEnd{0x1C, 0x23, 0x38};
constexpr QColor sheet{0xF4, 0xF5, 0xF8};
constexpr QColor ink{0x1C, 0x23, 0x38};
constexpr QColor clip{0xA9, 0xB4, 0xCC};

AnyView badge(int unseen, const TileSize& size) {
  const double height = std::max(size.body() * 0.27, 13.0);
  const QString words = unseen > 99 ? QStringLiteral("99+") : QString::number(unseen);
  return text(words)
      .size(std::max(height * 0.62, minimumTypeSize))
      .weight(FontWeight::semibold)
      .colour(palette::white)
      .padding(height * 0.26, 0)
      .frame({.minWidth = height, .minHeight = height, .maxHeight = height})
      .background(capsule().fill(QColor(0xC8, 0x1E, 0x3C)));
}

bool showsPreview(const ClipboardReading& reading, const TileSize& size) {
  return reading.preview && reading.hasRead && !reading.hasTrouble && size.hasCaption();
}

/// "999", "1.2k", "12k": never wider than the sheet.
QString shortCount(std::size_t count) {
  if (count < 1000)
    return QString::number(count);
  const double thousands = std::floor(static_cast<double>(count) / 100) / 10;
  return QString::fromStdString(
             decimalText(thousands, thousands < 10 && count % 1000 >= 100 ? 1 : 0)) +
         "k";
}

/// The number of items, small, and the newest one's line under it.
AnyView preview(const ClipboardReading& reading, const TileSize& size) {
  const double points = size.words(0.13);
  return vstack({text(shortCount(reading.count))
                     .size(points)
                     .weight(FontWeight::bold)
                     .colour(withContrast(clip, sheet)),
                 text(*reading.preview)
                     .size(points)
                     .weight(FontWeight::medium)
                     .colour(ink)
                     .lines(size.side >= 96 ? 3 : 2)
                     .fill(Alignment::topLeading)})
      .align(Alignment::leading);
}

AnyView onSheet(const ClipboardReading& reading, const TileSize& size) {
  const double body = size.body();
  if (!reading.hasRead)
    return symbol("ellipsis").colour(withOpacity(ink, 0.4)).size(body * 0.34).fill();
  if (reading.hasTrouble)
    return symbol("exclamationmark.triangle.fill")
        .colour(withContrast(palette::orange, sheet, 3))
        .size(body * 0.32)
        .fill();
  if (showsPreview(reading, size))
    return preview(reading, size);
  return text(shortCount(reading.count))
      .size(body * 0.34)
      .weight(FontWeight::semibold)
      .colour(ink)
      .align(TextAlignment::centre)
      .figure(minimumTypeSize)
      .fill();
}

QString spokenState(const ClipboardReading& reading) {
  if (!reading.hasRead)
    return worded(loadingText);
  QStringList state{
      wordedPlural("{count} item", "{count} items", static_cast<long long>(reading.count))};
  if (reading.unseen > 0)
    state << wordedPlural("{count} new", "{count} new", static_cast<long long>(reading.unseen));
  if (reading.preview)
    state << QString::fromStdString(*reading.preview);
  return joinedFacts(std::move(state));
}

AnyView loadingTile(const TileSize& size) {
  return tile(TileContent{.ground = board,
                          .groundEnd = boardEnd,
                          .sentence = worded(loadingText),
                          .mark = symbol("doc.on.clipboard").colour(palette::white),
                          .state = TileState::waiting,
                          .label = worded("Clipboard"),
                          .value = worded(loadingText)},
              size);
}

std::string symbolOf(const ClipboardItem& item) {
  switch (item.kind) {
  case ClipboardItem::Kind::file:
    return "doc.fill";
  case ClipboardItem::Kind::image:
    return "photo";
  case ClipboardItem::Kind::text:
    break;
  }
  if (item.isSensitive)
    return "lock.fill";
  return ClipboardItem::looksLikeURL(item.text.value_or("")) ? "link" : "note.text";
}

} // namespace

AnyView clipboardTileIcon(const ClipboardReading& reading, const TileSize& size) {
  if (!reading.hasRead && size.hasCaption())
    return loadingTile(size);
  const double body = size.body();
  // Words need the room of the board's margins.
  const bool isWide = showsPreview(reading, size);
  const double side = body * (isWide ? 0.08 : 0.15);
  const double above = body * (isWide ? 0.13 : 0.17);
  const double below = body * (isWide ? 0.06 : 0.12);
  const AnyView paper = onSheet(reading, size)
                            .padding(Insets{body * 0.06, body * 0.1, body * 0.06, body * 0.02})
                            .background(roundedRectangle(body * 0.07).fill(sheet))
                            .padding(Insets{side, above, side, below});
  const AnyView clamp = capsule()
                            .gradient(palette::white, clip)
                            .frame(body * 0.36, body * 0.15)
                            .padding(Insets{0, body * (isWide ? 0.06 : 0.09), 0, 0})
                            .fill(Alignment::top);
  std::vector<AnyView> layers{rectangle().gradient(board, boardEnd), paper, clamp};
  if (reading.unseen > 0 && reading.hasRead)
    layers.push_back(badge(reading.unseen, size)
                         .padding(Insets{0, body * 0.05, body * 0.05, 0})
                         .fill(Alignment::topTrailing));
  return tile(board, zstack(std::move(layers)), size)
      .accessibility(worded("Clipboard"), spokenState(reading));
}

QString clipboardLine(const ClipboardItem& item, bool isRevealed) {
  if (item.isSensitive && !isRevealed)
    return QStringLiteral("••••••••••••");
  if (item.ogTitle && !item.ogTitle->empty())
    return QString::fromStdString(*item.ogTitle);
  return QString::fromStdString(item.previewLine());
}

PanelRow clipboardRow(const ClipboardItem& item, bool isRevealed, const QString& time) {
  PanelRow row;
  row.id = QString::fromStdString(item.id.text());
  row.title = clipboardLine(item, isRevealed);
  if (row.title.isEmpty())
    row.title = worded("Blank text");
  QStringList about;
  const bool hasPreview = item.ogFetchedAt.has_value() && !item.isSensitive;
  if (hasPreview && item.ogTitle)
    about << QString::fromStdString(item.linkHost());
  if (item.sourceAppName && !item.sourceAppName->empty())
    about << QString::fromStdString(*item.sourceAppName);
  about << time;
  if (item.kind == ClipboardItem::Kind::image && !item.imageData)
    about << worded("too large to keep");
  else if (item.kind != ClipboardItem::Kind::image && item.byteSize >= 1000)
    about << QString::fromStdString(byteText(item.byteSize));
  if (hasPreview && item.ogDescription)
    about << QString::fromStdString(*item.ogDescription);
  row.subtitle = joinedPieces(about);
  row.symbol = QString::fromStdString(symbolOf(item));
  if (item.isSensitive)
    row.actions.push_back({isRevealed ? "lock.fill" : "lock.open.fill",
                           isRevealed ? worded("Hide") : worded("Show")});
  row.actions.push_back({"trash", worded("Remove")});
  row.actions.push_back({item.isPinned ? "pin.fill" : "pin",
                         item.isPinned ? worded("Unpin") : worded("Pin"), item.isPinned});
  return row;
}

} // namespace tavrin
