#include "TavrinWidgetsUI/Files/FileWords.h"

#include "TavrinCore/Kinds/Clipboard/ClipboardItem.h"
#include "TavrinWidgetsUI/Kit/Pieces.h"
#include "TavrinWidgetsUI/Kit/Views/GradientGround.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QDateTime>
#include <QLocale>
#include <algorithm>

namespace tavrin {

namespace {

constexpr QColor paper{0xF6, 0xF6, 0xF3};
constexpr QColor folded{0xCF, 0xD3, 0xD8};
constexpr QColor folderFront{0x5A, 0xB4, 0xF0};
constexpr QColor folderBack{0x2F, 0x86, 0xC9};
constexpr double sheetRatio = 0.78;
constexpr double foldRatio = 0.26;
constexpr double roundness = 0.08;

QDateTime local(Date date) {
  return QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(date.unixSeconds() * 1000));
}

struct SheetKey {
  bool isMissing;
  bool operator==(const SheetKey&) const = default;
};

void paintSheet(QPainter& painter, const QRectF& rect, const SheetKey& key) {
  const double fold = rect.width() * foldRatio;
  const double radius = rect.height() * roundness;
  QPainterPath outline;
  outline.moveTo(rect.left() + radius, rect.top());
  outline.lineTo(rect.right() - fold, rect.top());
  outline.lineTo(rect.right(), rect.top() + fold);
  outline.lineTo(rect.right(), rect.bottom() - radius);
  outline.quadTo(rect.bottomRight(), {rect.right() - radius, rect.bottom()});
  outline.lineTo(rect.left() + radius, rect.bottom());
  outline.quadTo(rect.bottomLeft(), {rect.left(), rect.bottom() - radius});
  outline.lineTo(rect.left(), rect.top() + radius);
  outline.quadTo(rect.topLeft(), {rect.left() + radius, rect.top()});
  if (key.isMissing) {
    QPen pen(withOpacity(palette::white, 0.55), std::max(1.0, rect.height() * 0.04));
    pen.setDashPattern({2.5, 2});
    painter.setBrush(Qt::NoBrush);
    painter.setPen(pen);
    painter.drawPath(outline);
    return;
  }
  painter.setPen(Qt::NoPen);
  painter.setBrush(paper);
  painter.drawPath(outline);
  QPainterPath corner;
  corner.moveTo(rect.right() - fold, rect.top());
  corner.lineTo(rect.right() - fold, rect.top() + fold * 0.8);
  corner.quadTo({rect.right() - fold, rect.top() + fold},
                {rect.right() - fold * 0.8, rect.top() + fold});
  corner.lineTo(rect.right(), rect.top() + fold);
  corner.closeSubpath();
  painter.setBrush(folded);
  painter.drawPath(corner);
}

void paintFolder(QPainter& painter, const QRectF& rect, const SheetKey& key) {
  const double radius = rect.height() * 0.1;
  const QRectF whole = rect.adjusted(0, rect.height() * 0.12, 0, -rect.height() * 0.06);
  QPainterPath back;
  back.setFillRule(Qt::WindingFill);
  back.addRoundedRect(QRectF(whole.left(), whole.top(), whole.width() * 0.5, whole.height() * 0.4),
                      radius, radius);
  back.addRoundedRect(whole.adjusted(0, whole.height() * 0.14, 0, -whole.height() * 0.3), radius,
                      radius);
  QPainterPath front;
  front.addRoundedRect(whole.adjusted(0, whole.height() * 0.3, 0, 0), radius, radius);
  painter.setPen(Qt::NoPen);
  painter.setOpacity(painter.opacity() * (key.isMissing ? 0.4 : 1));
  painter.setBrush(folderBack);
  painter.drawPath(back);
  painter.setBrush(folderFront);
  painter.drawPath(front);
}

AnyView sheetMark(const FileSheet& sheet, double height) {
  const double width = height * sheetRatio;
  // Letters of one of the two inks can be read on it.
  const QColor colour =
      GradientGround{fileColour(sheet.kind), fileColour(sheet.kind)}.legible().from;
  const double points = height * 0.21;
  const bool hasRoom = points >= 7.5 && !sheet.ending.isEmpty();
  const AnyView band = rectangle().fill(colour).frame(width, height * 0.3);
  if (!hasRoom)
    return symbol(fileSymbol(sheet.kind).toStdString())
        .colour(withContrast(colour, paper, 3))
        .size(height * 0.5)
        .offset(0, height * 0.06)
        .fill();
  const QColor ink = contrast(palette::white, colour) >= 4.5 ? palette::white : palette::black;
  return vstack({symbol(fileSymbol(sheet.kind).toStdString())
                     .colour(withContrast(colour, paper, 3))
                     .size(height * 0.32)
                     .padding(Insets{0, height * 0.17, 0, 0}),
                 spacer(),
                 zstack({band, text(sheet.ending)
                                   .size(points)
                                   .weight(FontWeight::bold)
                                   .colour(ink)
                                   .align(TextAlignment::centre)
                                   .frame({.maxWidth = width * 0.94})})
                     .padding(Insets{0, 0, 0, height * 0.1})});
}

} // namespace

QString fileSymbol(FileKind kind) {
  switch (kind) {
  case FileKind::picture:
    return QStringLiteral("photo");
  case FileKind::video:
    return QStringLiteral("film");
  case FileKind::audio:
    return QStringLiteral("music.note");
  case FileKind::sheet:
    return QStringLiteral("tablecells");
  case FileKind::slides:
    return QStringLiteral("play.fill");
  case FileKind::document:
  case FileKind::text:
    return QStringLiteral("note.text");
  case FileKind::code:
    return QStringLiteral("chevron.left.forwardslash.chevron.right");
  case FileKind::archive:
    return QStringLiteral("archivebox.fill");
  case FileKind::program:
    return QStringLiteral("gearshape.fill");
  case FileKind::other:
    break;
  }
  return QStringLiteral("doc.fill");
}

QColor fileColour(FileKind kind) {
  switch (kind) {
  case FileKind::picture:
    return {0x14, 0x8F, 0xA6};
  case FileKind::video:
    return {0x8E, 0x44, 0xC9};
  case FileKind::audio:
    return {0xD6, 0x33, 0x6C};
  case FileKind::document:
    return {0xD0, 0x34, 0x2C};
  case FileKind::sheet:
    return {0x1F, 0x8A, 0x4C};
  case FileKind::slides:
    return {0xC7, 0x5A, 0x11};
  case FileKind::text:
    return {0x5B, 0x64, 0x70};
  case FileKind::code:
    return {0x2B, 0x63, 0xC9};
  case FileKind::archive:
    return {0x9A, 0x6B, 0x1F};
  case FileKind::program:
    return {0x4B, 0x4F, 0x9E};
  case FileKind::other:
    break;
  }
  return {0x6B, 0x72, 0x7C};
}

QString momentText(Date date, Date now) {
  const QDateTime then = local(date);
  const QDate today = local(now).date();
  const QLocale locale;
  if (then.date() == today)
    return locale.toString(then.time(), QLocale::ShortFormat);
  if (then.date().addDays(1) == today)
    return worded("Yesterday");
  return locale.toString(then.date(), QLocale::ShortFormat);
}

QString fileTitle(const std::filesystem::path& path) {
  return QString::fromStdString(shownName(path));
}

PanelRow fileRow(const FolderFile& file, const QImage& picture, const QString& place, Date now) {
  PanelRow row;
  row.id = QString::fromStdString(file.path.native());
  row.title = fileTitle(file.path);
  row.isFileName = true;
  const std::string name = file.path.filename().native();
  row.symbol = file.isFolder ? QStringLiteral("folder.fill") : fileSymbol(fileKind(name));
  row.image = picture;
  QStringList about{momentText(file.date, now)};
  if (!file.isFolder)
    about << QString::fromStdString(byteText(static_cast<std::int64_t>(file.size)));
  if (!place.isEmpty())
    about << place;
  row.subtitle = joinedPieces(about);
  return row;
}

FileSheet fileSheet(const std::filesystem::path& path, bool isFolder, const QImage& picture) {
  const std::string name = path.filename().native();
  return {fileKind(name), QString::fromStdString(fileEnding(name)), isFolder, false, picture};
}

double fileSheetWidth(const FileSheet& sheet, double height) {
  if (!sheet.picture.isNull() && !sheet.isMissing)
    return height * std::clamp(double(sheet.picture.width()) / sheet.picture.height(), 0.7, 1.2);
  return height * (sheet.isFolder ? 1.1 : sheetRatio);
}

AnyView fileSheetView(const FileSheet& sheet, double height) {
  const double width = fileSheetWidth(sheet, height);
  const SheetKey key{sheet.isMissing};
  if (sheet.isFolder)
    return Canvas<SheetKey>{{}, key, paintFolder}.frame(width, height);
  if (sheet.isMissing)
    return Canvas<SheetKey>{{}, key, paintSheet}.frame(width, height);
  if (!sheet.picture.isNull())
    return image(sheet.picture)
        .covering()
        .frame(width - height * 0.08, height * 0.92)
        .clip(roundedRectangle(height * 0.04))
        .padding(height * 0.04)
        .background(roundedRectangle(height * roundness).fill(paper));
  return zstack({Canvas<SheetKey>{{}, key, paintSheet}, sheetMark(sheet, height)})
      .frame(width, height);
}

} // namespace tavrin
