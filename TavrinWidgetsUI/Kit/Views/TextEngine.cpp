#include "TavrinWidgetsUI/Kit/Views/TextEngine.h"

#include "TavrinWidgetsUI/Kit/Views/FontFile.h"

#include <QGuiApplication>
#include <QPainter>
#include <QTextBoundaryFinder>
#include <QTextLayout>
#include <algorithm>
#include <mutex>
#include <ranges>

namespace tavrin {

namespace {

constexpr double referenceSize = 100;
constexpr std::size_t shapedLimit = 24;
constexpr std::size_t sizedFontLimit = 12;
constexpr std::size_t brokenLimit = 6;
constexpr QChar ellipsis(0x2026);
/// Points; far less than a letter.
constexpr double rounding = 1e-6;
const QString hyphen = QStringLiteral("-");
/// Letters: fewer alone on a line are hard to read.
constexpr qsizetype leastAfterHyphen = 3;

/// Moves the first entry that `matches` to the front, or makes room for one and adds `fresh()`.
template <class T, class Matches, class Fresh>
T& recent(std::list<T>& entries, std::size_t limit, Matches matches, Fresh fresh) {
  const auto found = std::find_if(entries.begin(), entries.end(), matches);
  if (found != entries.end()) {
    entries.splice(entries.begin(), entries, found);
    return entries.front();
  }
  while (entries.size() >= limit)
    entries.pop_back();
  entries.push_front(fresh());
  return entries.front();
}

/// As much of a text as lines of so much room in all, at the reference size, can show: whatever
/// follows costs as much to break and to shape.
QString beginning(const QString& text, double room) {
  // Letters are wider than a sixth of their size; a family of emoji takes eleven units.
  constexpr double lettersPerSize = 6;
  constexpr qsizetype mostUnits = 12;
  const auto letters = static_cast<qsizetype>(room / referenceSize * lettersPerSize) + 1;
  if (text.size() <= letters)
    return text;
  const QString start = text.left(letters * mostUnits);
  QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, start);
  for (qsizetype i = 0; i < letters && finder.position() < start.size(); ++i)
    finder.toNextBoundary();
  return start.left(finder.position());
}

/// How many letters follow one another from there on.
qsizetype lettersFrom(const QString& string, qsizetype from) {
  const auto end = std::find_if(string.begin() + from, string.end(),
                                [](QChar character) { return !character.isLetter(); });
  return end - string.begin() - from;
}

bool isDigit(QChar character) {
  return character >= u'0' && character <= u'9';
}

/// Digits of right-to-left text are placed by the shaper, which knows their order.
bool canBeTabular(const QString& string) {
  return std::any_of(string.begin(), string.end(), isDigit) && !string.isRightToLeft() &&
         std::none_of(string.begin(), string.end(), [](QChar character) {
           return character.direction() == QChar::DirR || character.direction() == QChar::DirAL;
         });
}

QString fallbackFamily() {
  const QString family = QGuiApplication::font().family();
  // Without a desktop's choice the toolkit asks for "Sans Serif" and gets whatever comes first.
  const bool isChosen = !family.isEmpty() && family.compare(u"Sans Serif", Qt::CaseInsensitive) &&
                        family.compare(u"sans", Qt::CaseInsensitive);
  return !isChosen && hasFontFamily(QStringLiteral("Inter")) ? QStringLiteral("Inter") : family;
}

/// Set on the main thread; pictures are drawn in the pool, too.
class UsedFamily {
public:
  QString get() {
    const std::lock_guard lock(mutex_);
    if (family_.isEmpty())
      family_ = fallbackFamily();
    return family_;
  }
  /// Whether it is another one.
  bool set(const QString& family) {
    const std::lock_guard lock(mutex_);
    return std::exchange(family_, family) != family;
  }

private:
  std::mutex mutex_;
  QString family_;
};

UsedFamily& usedFamily() {
  static UsedFamily family;
  return family;
}

} // namespace

QString interfaceFontFamily() {
  return usedFamily().get();
}

bool setInterfaceFontFamily(const QString& family) {
  // Before the first choice the fallback counts.
  usedFamily().get();
  return usedFamily().set(!family.isEmpty() && hasFontFamily(family) ? family : fallbackFamily());
}

const TextEngine::Face& TextEngine::face(FontWeight weight) {
  return recent(
      faces_, 4, [&](const Face& face) { return face.weight == weight; },
      [&] {
        Face face;
        face.weight = weight;
        face.font = QFont(interfaceFontFamily());
        face.font.setPixelSize(static_cast<int>(referenceSize));
        face.font.setWeight(static_cast<QFont::Weight>(weight));
        face.font.setHintingPreference(QFont::PreferNoHinting);
        if (const QByteArray file = fontFile(face.font.family(), weight); !file.isNull())
          face.raw.loadFromData(file, referenceSize, QFont::PreferNoHinting);
        face.isFile = face.raw.isValid();
        if (!face.isFile)
          face.raw = QRawFont::fromFont(face.font);
        face.capHeight = face.raw.capHeight();
        const auto glyphs = face.raw.glyphIndexesForString(QStringLiteral("0123456789"));
        const auto advances = face.raw.advancesForGlyphIndexes(glyphs);
        for (std::size_t i = 0; i < face.digits.size() && qsizetype(i) < glyphs.size(); ++i) {
          face.digits[i] = glyphs[qsizetype(i)];
          face.digitWidths[i] = advances[qsizetype(i)].x();
          face.digitWidth = std::max(face.digitWidth, face.digitWidths[i]);
        }
        return face;
      });
}

/// With the face's file alone where that is enough: who lays out with the font asks the toolkit for
/// all fonts there are.
void TextEngine::lay(QTextLayout& layout, const Face& face) {
  layout.setFont(face.font);
  if (face.isFile && canLayOut(face.raw, layout.text()))
    layout.setRawFont(face.raw);
}

void TextEngine::shapeWhole(Shaped& shaped, const Face& face, const QString& part) {
  QTextLayout layout(part);
  lay(layout, face);
  QTextOption option;
  option.setWrapMode(QTextOption::NoWrap);
  // A figure beside a space at the end has to keep its distance.
  option.setFlags(QTextOption::IncludeTrailingSpaces);
  layout.setTextOption(option);
  layout.beginLayout();
  QTextLine line = layout.createLine();
  layout.endLayout();
  if (!line.isValid())
    return;
  line.setPosition({0, -line.ascent()});
  for (const QGlyphRun& run : layout.glyphRuns())
    shaped.pieces.push_back({run.rawFont(), run.glyphIndexes(), run.positions()});
  shaped.width = line.naturalTextWidth();
}

void TextEngine::shapeTabular(Shaped& shaped, const Face& face) {
  Piece digits{face.raw, {}, {}};
  const QString& string = shaped.string;
  for (qsizetype i = 0; i < string.size();) {
    qsizetype end = i;
    while (end < string.size() && !isDigit(string[end]))
      ++end;
    if (end > i) {
      // Between the digits of a ticking figure stands the same colon, shaped long ago.
      const Shaped& part = this->shaped(string.mid(i, end - i), face.weight, Digits::proportional);
      for (Piece piece : part.pieces) {
        for (QPointF& position : piece.positions)
          position += QPointF(shaped.width, 0);
        shaped.pieces.push_back(std::move(piece));
      }
      shaped.width += part.width;
    }
    for (i = end; i < string.size() && isDigit(string[i]); ++i) {
      const auto digit = static_cast<std::size_t>(string[i].unicode() - u'0');
      digits.glyphs << face.digits[digit];
      digits.positions << QPointF(shaped.width + (face.digitWidth - face.digitWidths[digit]) / 2,
                                  0);
      shaped.width += face.digitWidth;
    }
  }
  shaped.pieces.push_back(std::move(digits));
}

TextEngine::Shaped& TextEngine::shaped(const QString& string, FontWeight weight, Digits digits) {
  return recent(
      shaped_, shapedLimit,
      [&](const Shaped& shaped) {
        return shaped.weight == weight && shaped.digits == digits && shaped.string == string;
      },
      [&] {
        Shaped shaped;
        shaped.string = string;
        shaped.weight = weight;
        shaped.digits = digits;
        if (digits == Digits::tabular && canBeTabular(string))
          shapeTabular(shaped, face(weight));
        else
          shapeWhole(shaped, face(weight), string);
        return shaped;
      });
}

QRawFont TextEngine::sized(const QRawFont& reference, double pointSize) {
  return recent(
             sizedFonts_, sizedFontLimit,
             [&](const SizedFont& sized) {
               return sized.pointSize == pointSize && sized.reference == reference;
             },
             [&] {
               SizedFont sized{reference, pointSize, reference};
               sized.font.setPixelSize(pointSize);
               return sized;
             })
      .font;
}

double TextEngine::width(const QString& string, FontWeight weight, double pointSize,
                         Digits digits) {
  return shaped(string, weight, digits).width * pointSize / referenceSize;
}

double TextEngine::capHeight(FontWeight weight, double pointSize) {
  return face(weight).capHeight * pointSize / referenceSize;
}

void TextEngine::draw(QPainter& painter, const QString& string, FontWeight weight, double pointSize,
                      QPointF origin, Digits digits) {
  Shaped& text = shaped(string, weight, digits);
  if (text.runSize != pointSize) {
    text.runs.clear();
    for (const Piece& piece : text.pieces) {
      QList<QPointF> positions = piece.positions;
      for (QPointF& position : positions)
        position *= pointSize / referenceSize;
      QGlyphRun run;
      run.setRawFont(sized(piece.font, pointSize));
      run.setGlyphIndexes(piece.glyphs);
      run.setPositions(positions);
      text.runs.push_back(std::move(run));
    }
    text.runSize = pointSize;
  }
  if (drawnLines != nullptr)
    note(painter, text, pointSize, origin);
  if (!drawsText)
    return;
  for (const QGlyphRun& run : text.runs)
    painter.drawGlyphRun(origin, run);
}

void TextEngine::note(const QPainter& painter, const Shaped& text, double pointSize,
                      QPointF origin) {
  QPainterPath ink;
  for (const QGlyphRun& run : text.runs)
    for (qsizetype i = 0; i < run.glyphIndexes().size(); ++i) {
      const quint32 glyph = run.glyphIndexes()[i];
      QPainterPath path = run.rawFont().pathForGlyph(glyph);
      // Glyphs that are pictures have no outline.
      if (path.isEmpty())
        path.addRect(run.rawFont().boundingRect(glyph));
      ink.addPath(path.translated(origin + run.positions()[i]));
    }
  const QTransform device = painter.combinedTransform();
  QColor colour = painter.pen().color();
  colour.setAlphaF(colour.alphaF() * float(painter.opacity()));
  drawnLines->push_back({text.string, pointSize, colour, device.map(ink),
                         painter.hasClipping() ? device.map(painter.clipPath()) : QPainterPath()});
}

QString TextEngine::elided(const QString& string, FontWeight weight, double pointSize, double width,
                           Cut where) {
  // A text that was fitted to this very width comes out longer by what arithmetic rounds.
  if (this->width(string, weight, pointSize) <= width + rounding)
    return string;
  const double reference = width * referenceSize / pointSize;
  return recent(
             broken_, brokenLimit,
             [&, key = Broken{string, weight, reference, 0, 0, {}, 0, where}](
                 const Broken& broken) { return broken == key; },
             [&] {
               return Broken{string,    weight, reference,
                             0,         0,      {cut(string, weight, reference, where)},
                             reference, where};
             })
      .lines.front();
}

QString TextEngine::cut(const QString& string, FontWeight weight, double width, Cut where) {
  QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, string);
  std::vector<qsizetype> ends{0};
  while (finder.toNextBoundary() > 0)
    ends.push_back(finder.position());
  // With so many of its letters.
  const auto candidate = [&](std::size_t letters) {
    const std::size_t behind = where == Cut::middle ? letters / 2 : 0;
    QString head = string.left(ends[letters - behind]);
    while (head.endsWith(u' '))
      head.chop(1);
    QString tail = string.mid(ends[ends.size() - 1 - behind]);
    while (tail.startsWith(u' '))
      tail.remove(0, 1);
    return head + ellipsis + tail;
  };
  const auto fits = [&](std::size_t letters) {
    Shaped shaped;
    shaped.string = candidate(letters);
    if (canBeTabular(shaped.string))
      shapeTabular(shaped, face(weight));
    else
      shapeWhole(shaped, face(weight), shaped.string);
    return shaped.width <= width;
  };
  const auto counts = std::views::iota(std::size_t{1}, std::max(ends.size(), std::size_t{1}));
  const auto tooLong = std::ranges::partition_point(counts, fits);
  return candidate(static_cast<std::size_t>(tooLong - counts.begin()));
}

TextEngine::Lines TextEngine::lines(const QString& string, FontWeight weight, double pointSize,
                                    double leastSize, double width, int limit) {
  const double reference = width * referenceSize / pointSize;
  const double most = reference * pointSize / std::min(leastSize, pointSize);
  const Broken& broken = recent(
      broken_, brokenLimit,
      [&, key = Broken{string, weight, reference, most, limit, {}, 0, Cut::end}](
          const Broken& broken) { return broken == key; },
      [&] {
        double brokenWidth = reference;
        QStringList lines = breakLines(string, weight, brokenWidth, most, limit);
        return Broken{string, weight,           reference,   most,
                      limit,  std::move(lines), brokenWidth, Cut::end};
      });
  return {broken.lines, pointSize * reference / broken.brokenWidth};
}

QStringList TextEngine::breakLines(const QString& whole, FontWeight weight, double& width,
                                   double mostWidth, int limit) {
  const double first = width;
  mostWidth = std::max(first, mostWidth);
  const QString string = beginning(whole, mostWidth * limit);
  Attempt shortened;
  // Whole words, in type as large as may be; else a word too long goes on in the next line.
  for (const bool breaksWords : {false, true}) {
    constexpr int sizes = 7;
    const double step = (mostWidth - first) / (sizes - 1);
    Attempt attempt = brokenInto(string, weight, first, limit, breaksWords);
    const Attempt smallest = attempt.isWhole || mostWidth <= first
                                 ? attempt
                                 : brokenInto(string, weight, mostWidth, limit, breaksWords);
    // Between the two nothing fits either.
    if (!smallest.isWhole) {
      // One word that fills all lines is broken; among others it is cut alone.
      if (!breaksWords || shortened.lines.size() < limit)
        shortened = smallest;
      continue;
    }
    width = first;
    for (int i = 1; !attempt.isWhole; ++i) {
      const bool isNear = attempt.widest > width && attempt.widest <= mostWidth;
      width = isNear ? attempt.widest : width + step;
      if (i == sizes - 1 || width >= mostWidth) {
        width = mostWidth;
        return smallest.lines;
      }
      attempt = brokenInto(string, weight, width, limit, breaksWords);
    }
    return attempt.lines;
  }
  width = mostWidth;
  return shortened.lines;
}

TextEngine::Attempt TextEngine::brokenInto(const QString& string, FontWeight weight, double width,
                                           int limit, bool breaksWords) {
  QString text = string;
  text.replace(u'\n', QChar(QChar::LineSeparator));
  QTextLayout layout(text);
  lay(layout, face(weight));
  QTextOption option;
  option.setWrapMode(breaksWords ? QTextOption::WrapAtWordBoundaryOrAnywhere
                                 : QTextOption::WordWrap);
  layout.setTextOption(option);
  layout.beginLayout();
  Attempt result;
  while (result.lines.size() < limit) {
    QTextLine line = layout.createLine();
    if (!line.isValid())
      break;
    line.setLineWidth(width);
    qsizetype end = line.textStart() + line.textLength();
    const auto isInWord = [&] {
      return end > 0 && end < text.size() && text[end - 1].isLetter() && text[end].isLetter();
    };
    const bool isLast = result.lines.size() + 1 == limit;
    const bool isBroken = breaksWords && !isLast && isInWord();
    if (isBroken) {
      line.setLineWidth(width - this->width(hyphen, weight, referenceSize));
      end = line.textStart() + line.textLength();
      const auto after = lettersFrom(text, end);
      const auto columns = line.textLength() - std::max(leastAfterHyphen - after, qsizetype{0});
      if (after > 0 && columns >= leastAfterHyphen) {
        line.setNumColumns(static_cast<int>(columns));
        end = line.textStart() + line.textLength();
      }
    }
    QString part = text.mid(line.textStart(), line.textLength());
    while (part.endsWith(QChar(QChar::LineSeparator)) || part.endsWith(u' '))
      part.chop(1);
    if (isBroken && isInWord())
      part += hyphen;
    if (isLast && end < text.size()) {
      part = cut(text.mid(line.textStart()).section(QChar(QChar::LineSeparator), 0, 0) + ellipsis,
                 weight, width);
      result.isWhole = false;
    } else if (result.widest = std::max(result.widest, line.naturalTextWidth());
               line.naturalTextWidth() > width) {
      part = cut(part, weight, width);
      result.isWhole = false;
    }
    result.lines << part;
  }
  layout.endLayout();
  return result;
}

} // namespace tavrin
