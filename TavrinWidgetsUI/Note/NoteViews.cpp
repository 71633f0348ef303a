#include "TavrinWidgetsUI/Note/NoteViews.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <algorithm>
#include <cmath>

namespace tavrin {
namespace {

/// Text's own line height by its size.
constexpr double lineRatio = 1.2;
/// A note is read, not glanced at.
constexpr double leastPoints = 7.5;

void drawRules(QPainter& painter, const QRectF& rect, const NoteRules& rules) {
  painter.setPen(Qt::NoPen);
  painter.setBrush(rules.colour);
  for (double y = rules.firstLine; y < rect.height() - rules.spacing * 0.3; y += rules.spacing)
    painter.drawRect(QRectF(rect.x(), rect.y() + y, rect.width(), 0.75));
}

/// The text without what would only take lines on a tile.
QString written(const NoteSettings& note) {
  return QString::fromStdString(note.text).trimmed();
}

/// The text on its lines. The paper is the same in both forms; a wide one has room for longer
/// lines.
AnyView paper(const NoteSettings& note, const TileSize& size) {
  const QColor paper = notePaper(note.colorHex);
  const QColor ink = noteInk(paper);
  const double points = std::max(size.words(0.135), leastPoints);
  const double pitch = points * lineRatio;
  const double margin = size.body() * 0.11;
  const double top = size.body() * 0.085;
  const int lineCount = std::max(1, static_cast<int>((size.body() - 1.3 * top) / pitch));
  const QString words = written(note);
  const bool isEmpty = words.isEmpty();
  const AnyView body = text(isEmpty ? worded(emptyNoteText) : words)
                           .size(points)
                           .weight(FontWeight::medium)
                           .colour(isEmpty ? withContrast(mix(ink, paper, 0.35), paper) : ink)
                           .lines(lineCount)
                           .ruled();
  const AnyView rules = noteRules({top + pitch, pitch, withOpacity(ink, 0.13)});
  const bool hasRoom = !isEmpty || size.isWide() || size.hasCaption();
  const AnyView content =
      hasRoom ? body.fill(Alignment::topLeading).padding(Insets{margin, top, margin * 0.7, 0})
              : symbol("pencil")
                    .colour(withContrast(mix(ink, paper, 0.35), paper, 3))
                    .size(size.body() * 0.42)
                    .fill();
  // A lighter top edge lets the paper look like one.
  const AnyView sheet = rectangle().gradient(mix(paper, palette::white, 0.14), paper);
  return zstack({sheet, rules, content});
}

AnyView noteOn(const NoteSettings& note, const TileSize& size) {
  const QString words = written(note);
  return tile(notePaper(note.colorHex), paper(note, size).cached(), size)
      .accessibility(worded("Note"), words.isEmpty() ? worded(emptyNoteText) : words);
}

} // namespace

AnyView noteRules(const NoteRules& rules) {
  return canvas(rules, drawRules);
}

QColor notePaper(const std::string& colorHex) {
  return colourFromHex(colorHex, colourFromHex(NoteSettings::defaultColorHex, palette::warning));
}

QColor noteInk(const QColor& paper) {
  return withContrast(luminance(paper) > 0.18 ? QColor(0x2A, 0x22, 0x10) : QColor(0xFA, 0xF7, 0xF0),
                      paper, 7);
}

AnyView noteTileIcon(const NoteSettings& note, const TileSize& size) {
  return noteOn(note, size);
}

AnyView noteWideTile(const NoteSettings& note, const TileSize& size) {
  return noteOn(note, size);
}

} // namespace tavrin
