#pragma once

#include "TavrinCore/Base/Date.h"
#include "TavrinCore/Kinds/Files/FileKind.h"
#include "TavrinPlatform/FolderWatch.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelList.h"
#include "TavrinWidgetsUI/Kit/Views/View.h"

namespace tavrin {

/// A kind's symbol in lists, and the colour of its sheets.
QString fileSymbol(FileKind kind);
QColor fileColour(FileKind kind);

/// A point in time as lists show it, in the user's locale: the time of today, "Yesterday", or the
/// date.
QString momentText(Date date, Date now);

/// Room for a small picture at the left of a tall row, in points.
inline constexpr int filePictureWidth = 32;
/// A row with the file's symbol or picture, name, time and size. `place` is a further quiet word,
/// such as its folder.
PanelRow fileRow(const FolderFile& file, const QImage& picture, const QString& place, Date now);
/// The name as lists and tiles show it.
QString fileTitle(const std::filesystem::path& path);

/// A sheet of paper with a folded corner and the file's ending, `height` points high; a folder
/// where it is one. A missing file's sheet is an outline.
struct FileSheet {
  FileKind kind = FileKind::other;
  QString ending = {};
  bool isFolder = false;
  bool isMissing = false;
  /// In the sheet's place, where there is one.
  QImage picture = {};
};
FileSheet fileSheet(const std::filesystem::path& path, bool isFolder, const QImage& picture);
AnyView fileSheetView(const FileSheet& sheet, double height);
/// Its width.
double fileSheetWidth(const FileSheet& sheet, double height);

} // namespace tavrin
