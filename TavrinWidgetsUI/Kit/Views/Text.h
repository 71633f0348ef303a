#pragma once

#include "TavrinWidgetsUI/Kit/Views/AnyView.h"

#include <QColor>
#include <QFont>
#include <string>

namespace tavrin {

enum class FontWeight {
  regular = QFont::Normal,
  medium = QFont::Medium,
  semibold = QFont::DemiBold,
  bold = QFont::Bold,
};

enum class TextAlignment { leading, centre, trailing };

/// The interface font's family: the desktop's choice, or Inter where the desktop has none.
QString interfaceFontFamily();
/// The desktop's choice; empty for none. Whether another family is used from now on: then tiles
/// are to be rendered and panels to be made again.
bool setInterfaceFontFamily(const QString& family);

/// What a figure is not fitted below. Points.
inline constexpr double minimumTypeSize = 9;
/// The least type size anywhere on a tile: captions at S = 48. Points.
inline constexpr double minimumCaptionSize = 6.5;

/// A line of text, or a few. On one line all digits are equally wide. What is too long is set
/// smaller, down to 60 %; then a word among several lines is broken by a hyphen, and a line ends in
/// an ellipsis: a single one at 85 %.
struct Text : Modifiers<Text> {
  QString string;
  /// Points.
  double pointSize = 13;
  FontWeight fontWeight = FontWeight::regular;
  QColor inkColour = QColor(255, 255, 255, 235);
  TextAlignment textAlignment = TextAlignment::leading;
  int lineLimit = 1;
  /// From line to line, by the type's size.
  double leading = 1.2;
  /// Not empty: the room this string would need is taken, whatever the text is.
  QString widestForm = {};
  /// A figure is never cut. It is set smaller down to this many points, and then overflows.
  std::optional<double> figureMinimum = {};
  bool isFileName = false;
  bool isRuled = false;

  Text size(double points) const;
  Text weight(FontWeight weight) const;
  Text colour(const QColor& colour) const;
  Text align(TextAlignment alignment) const;
  /// Up to `limit` lines, broken between words.
  Text lines(int limit) const;
  /// Lines this far apart, by the type's size.
  Text spaced(double ratio) const;
  /// On a ground with rules: lines in smaller type stand as far apart as in full size.
  Text ruled() const;
  /// Digits as "8": `text("1:07").widest("88:88")` does not move as it ticks.
  Text widest(const QString& form) const;
  Text figure(double minimumPoints = 9) const;
  /// On one line it is cut in its middle, so that its extension stays.
  Text fileName() const;

  QSizeF measure(ViewContext& context, const QSizeF& offer) const;
  void paint(ViewContext& context, const QRectF& rect) const;
  bool operator==(const Text&) const = default;
};

Text text(const QString& string);
Text text(const std::string& utf8);
Text text(const char* utf8);

/// `string` with every digit an 8: the widest form of a live figure.
QString widestDigits(QString string);

} // namespace tavrin
