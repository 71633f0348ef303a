#pragma once

#include "TavrinWidgetsUI/Kit/Views/Text.h"

#include <QGlyphRun>
#include <QPainterPath>
#include <QRawFont>
#include <array>
#include <list>

class QPainter;
class QTextLayout;

namespace tavrin {

/// Shapes, measures and draws text, and keeps what it shaped: a few dozen strings, no more.
/// Text is shaped once without hinting at a reference size and scales from there.
class TextEngine {
public:
  enum class Digits { tabular, proportional };

  /// Width in points of `string` on one line.
  double width(const QString& string, FontWeight weight, double pointSize,
               Digits digits = Digits::tabular);
  /// Height of a capital in points.
  double capHeight(FontWeight weight, double pointSize);
  enum class Cut { end, middle };
  /// `string`, or as much of it as fits into `width` with an ellipsis.
  QString elided(const QString& string, FontWeight weight, double pointSize, double width,
                 Cut where = Cut::end);
  /// At most `limit` lines that fit into `width`.
  struct Lines {
    QStringList lines;
    /// At most `pointSize`: for the sake of words that are a little too long.
    double pointSize = 0;
  };
  /// Broken between words. What does not fit is set in smaller type, down to `leastSize`; a word
  /// that is longer than a line even so is broken by a hyphen; and what is too long for that, too,
  /// is elided.
  Lines lines(const QString& string, FontWeight weight, double pointSize, double leastSize,
              double width, int limit);
  /// Draws with the painter's pen from `origin`, the start of the baseline.
  void draw(QPainter& painter, const QString& string, FontWeight weight, double pointSize,
            QPointF origin, Digits digits = Digits::tabular);

  /// A line as it was drawn.
  struct DrawnLine {
    QString string;
    double pointSize = 0;
    QColor colour;
    /// Its glyphs, in the device's pixels.
    QPainterPath ink;
    /// What of the device they may be painted on; empty for all of it.
    QPainterPath clip;
  };
  /// Notes what is drawn, null for nowhere: for whoever checks what stands on a picture.
  std::vector<DrawnLine>* drawnLines = nullptr;
  /// Without it lines are noted only: a picture of what they stand on.
  bool drawsText = true;

private:
  /// Glyphs at the reference size.
  struct Piece {
    QRawFont font;
    QList<quint32> glyphs;
    QList<QPointF> positions;
  };
  struct Shaped {
    QString string;
    FontWeight weight = FontWeight::regular;
    Digits digits = Digits::tabular;
    std::vector<Piece> pieces;
    double width = 0;
    double runSize = 0;
    std::vector<QGlyphRun> runs;
  };
  struct Face {
    FontWeight weight = FontWeight::regular;
    QFont font;
    QRawFont raw;
    /// `raw` was made of the face's file.
    bool isFile = false;
    double capHeight = 0;
    double digitWidth = 0;
    std::array<quint32, 10> digits = {};
    std::array<double, 10> digitWidths = {};
  };
  struct SizedFont {
    QRawFont reference;
    double pointSize = 0;
    QRawFont font;
  };
  struct Broken {
    QString string;
    FontWeight weight = FontWeight::regular;
    double width = 0;
    double mostWidth = 0;
    int limit = 0;
    QStringList lines;
    double brokenWidth = 0;
    Cut where = Cut::end;
    bool operator==(const Broken& other) const {
      return weight == other.weight && width == other.width && mostWidth == other.mostWidth &&
             limit == other.limit && where == other.where && string == other.string;
    }
  };

  void note(const QPainter& painter, const Shaped& text, double pointSize, QPointF origin);
  const Face& face(FontWeight weight);
  Shaped& shaped(const QString& string, FontWeight weight, Digits digits);
  static void lay(QTextLayout& layout, const Face& face);
  void shapeTabular(Shaped& shaped, const Face& face);
  void shapeWhole(Shaped& shaped, const Face& face, const QString& part);
  QRawFont sized(const QRawFont& reference, double pointSize);
  struct Attempt {
    QStringList lines;
    /// Nothing is elided.
    bool isWhole = true;
    /// Of the lines, before they were cut.
    double widest = 0;
  };
  Attempt brokenInto(const QString& string, FontWeight weight, double width, int limit,
                     bool breaksWords);
  /// Widens `width` up to `mostWidth` for words that would fit then.
  QStringList breakLines(const QString& string, FontWeight weight, double& width, double mostWidth,
                         int limit);
  QString cut(const QString& string, FontWeight weight, double width, Cut where = Cut::end);

  /// Most recently used first, all of them.
  std::list<Shaped> shaped_;
  std::list<SizedFont> sizedFonts_;
  std::list<Broken> broken_;
  std::list<Face> faces_;
};

} // namespace tavrin
