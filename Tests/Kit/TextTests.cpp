#include "Tests/Kit/Pixels.h"

#include "TavrinWidgetsUI/Kit/Views/FontFile.h"
#include "TavrinWidgetsUI/Kit/Views/TextEngine.h"

#include <QFontDatabase>
#include <QTextLayout>
#include <chrono>
#include <gmock/gmock.h>
#include <limits>

namespace tavrin {
namespace {

constexpr double endless = std::numeric_limits<double>::infinity();

double widthOf(const Text& text, double offer = endless) {
  return ViewPainter().measure(text, {offer, 50}).width();
}

TEST(Text, DigitsAreEquallyWide) {
  for (const char* figure : {"11:11", "00:00", "47:09"})
    EXPECT_EQ(widthOf(text(figure).size(30)), widthOf(text("88:88").size(30))) << figure;
}

TEST(Text, TickingFigureDoesNotMove) {
  // The colon's columns are the same whatever digits stand beside it.
  const auto colon = [](const char* figure) {
    const QImage image = rendered(text(figure)
                                      .size(30)
                                      .colour(palette::white)
                                      .widest(QStringLiteral("88:88"))
                                      .align(TextAlignment::centre),
                                  {120, 40});
    return image.copy(56, 0, 8, 40);
  };
  for (const char* figure : {"11:11", "20:47", "59:08"})
    EXPECT_EQ(colon(figure), colon("88:88")) << figure;
}

TEST(Text, ASpaceAtItsEndHasItsWidthInEitherDirection) {
  for (const char* words : {"2 failing", "2 \u0645\u062e\u0641\u0642\u062a\u0627\u0646"}) {
    const double space = widthOf(text(QString::fromUtf8(words) + u' ').size(30)) -
                         widthOf(text(QString::fromUtf8(words)).size(30));
    EXPECT_GT(space, 2) << words;
    EXPECT_LT(space, 15) << words;
  }
}

TEST(Text, AFaceIsTakenFromItsFileWhereItHasOne) {
  for (const auto weight : {FontWeight::regular, FontWeight::semibold})
    EXPECT_FALSE(fontFile(QStringLiteral("Inter"), weight).isNull()) << int(weight);
  EXPECT_NE(fontFile(QStringLiteral("inter"), FontWeight::regular).constData(),
            fontFile(QStringLiteral("Inter"), FontWeight::bold).constData());
  // What stands in for a family is another one.
  for (const char* none : {"", "No Such Family", "Sans Serif", "monospace"})
    EXPECT_TRUE(fontFile(QString::fromUtf8(none), FontWeight::regular).isNull()) << none;
  EXPECT_TRUE(hasFontFamily(QStringLiteral("Inter")));
  EXPECT_FALSE(hasFontFamily(QStringLiteral("No Such Family")));
}

TEST(Text, IsLaidOutAsByTheToolkitsFont) {
  TextEngine engine;
  // The face has the first ones; of the others some characters come from other fonts.
  for (const char* words :
       {"Office — AVATAR", "12:30 (tea) – 50 %", "½ l, …«x» Å", "Größe: ¾ ﬁn", "Привет, κόσμε",
        "\u65e5\u672c Tokyo", "\u0645\u0631\u062d\u0628\u0627", "a\u0301"})
    for (const auto weight : {FontWeight::regular, FontWeight::bold}) {
      const QString string = QString::fromUtf8(words);
      QFont font(QStringLiteral("Inter"));
      font.setPixelSize(100);
      font.setWeight(static_cast<QFont::Weight>(weight));
      font.setHintingPreference(QFont::PreferNoHinting);
      QTextLayout layout(string, font);
      layout.beginLayout();
      const QTextLine line = layout.createLine();
      layout.endLayout();
      EXPECT_DOUBLE_EQ(engine.width(string, weight, 100, TextEngine::Digits::proportional),
                       line.naturalTextWidth())
          << words;
      std::vector<TextEngine::DrawnLine> drawn;
      engine.drawnLines = &drawn;
      QImage image(10, 10, QImage::Format_ARGB32_Premultiplied);
      QPainter painter(&image);
      engine.draw(painter, string, weight, 100, {}, TextEngine::Digits::proportional);
      engine.drawnLines = nullptr;
      QPainterPath expected;
      for (const QGlyphRun& run : layout.glyphRuns())
        for (qsizetype i = 0; i < run.glyphIndexes().size(); ++i) {
          QPainterPath path = run.rawFont().pathForGlyph(run.glyphIndexes()[i]);
          if (path.isEmpty())
            path.addRect(run.rawFont().boundingRect(run.glyphIndexes()[i]));
          expected.addPath(path.translated(run.positions()[i] - QPointF(0, line.ascent())));
        }
      EXPECT_EQ(drawn.front().ink.boundingRect().toAlignedRect(),
                expected.boundingRect().toAlignedRect())
          << words;
    }
}

TEST(Text, WidestFormReservesItsRoom) {
  EXPECT_EQ(widthOf(text("1").widest(QStringLiteral("88:88"))), widthOf(text("88:88")));
  EXPECT_EQ(widestDigits(QStringLiteral("12:05 left")), QStringLiteral("88:88 left"));
}

TEST(Text, IsFittedOnceAndThenElided) {
  TextEngine engine;
  const QString name = QStringLiteral("Grandmother's birthday");
  const auto regular = FontWeight::regular;
  const double full = engine.width(name, regular, 10);
  EXPECT_EQ(engine.elided(name, regular, 10, full), name);
  for (double width = full - 1; width > 12; width -= 9) {
    const QString shown = engine.elided(name, regular, 10, width);
    EXPECT_LE(engine.width(shown, regular, 10), width) << shown.toStdString();
    EXPECT_TRUE(shown.endsWith(QChar(0x2026))) << shown.toStdString();
    EXPECT_TRUE(name.startsWith(shown.chopped(1)));
  }
  // Set in the size that fits it is whole, however its width rounds.
  for (double width = full; width > full * 0.6; width -= 0.37)
    EXPECT_EQ(engine.elided(name, regular, 10 * width / full, width), name) << width;
  // At 70 % it is still whole, in smaller type; below 65 % it is cut. Never beyond its room.
  for (const double share : {0.7, 0.5, 0.2}) {
    const AnyView view =
        text(name).size(10).frame(full * share, 20).frame(full, 20, Alignment::leading);
    EXPECT_LE(inkedRect(rendered(view, {full, 20})).right(), full * share + 1) << share;
  }
  // What is cut all the same is not set as small as may be.
  const auto height = [&](const QString& words, double points, double width) {
    return inkedRect(rendered(text(words).size(points).frame(width, 40), {width, 40})).height();
  };
  const QString many(30, u'H');
  EXPECT_NEAR(height(many, 20, 60), height(many.left(3), 17, 400), 1.5);
}

TEST(Text, AFilesNameIsCutInItsMiddle) {
  TextEngine engine;
  const QString name = QStringLiteral("Annual report of the society.pdf");
  const auto regular = FontWeight::regular;
  const double full = engine.width(name, regular, 10);
  EXPECT_EQ(engine.elided(name, regular, 10, full, TextEngine::Cut::middle), name);
  for (double width = full - 1; width > 50; width -= 9) {
    const QString shown = engine.elided(name, regular, 10, width, TextEngine::Cut::middle);
    EXPECT_LE(engine.width(shown, regular, 10), width) << shown.toStdString();
    EXPECT_TRUE(shown.startsWith("An") && shown.endsWith("pdf")) << shown.toStdString();
    EXPECT_NE(shown, engine.elided(name, regular, 10, width));
  }
  EXPECT_EQ(engine.elided(name, regular, 10, 0, TextEngine::Cut::middle), QString(QChar(0x2026)));
}

TEST(Text, SmallerTypeStaysOnTheRulesOfItsGround) {
  const auto feet = [](const QString& words) {
    const QImage image =
        rendered(text(words).size(20).colour(palette::white).lines(3).ruled(), {90, 72});
    std::vector<int> last;
    for (int y = 0; y + 1 < image.height(); ++y) {
      const auto hasInk = [&](int row) {
        for (int x = 0; x < image.width(); ++x)
          if (qAlpha(image.pixel(x, row)) > 100)
            return true;
        return false;
      };
      if (hasInk(y) && !hasInk(y + 1))
        last.push_back(y);
    }
    return last;
  };
  const auto whole = feet(QStringLiteral("mn mn mn mn mn mn mn"));
  const auto smaller = feet(QStringLiteral("mnmnmnmn mn mnmnmnmn"));
  ASSERT_EQ(whole.size(), 3u);
  ASSERT_EQ(smaller.size(), 3u);
  EXPECT_EQ(smaller[2] - smaller[0], whole[2] - whole[0]);
}

// Each letter that is typed into a note breaks all of its text anew.
TEST(Text, WhatNoTileCanShowCostsNothing) {
  const auto seconds = [](const QString& words, QStringList& lines) {
    double least = 1e9;
    for (int i = 0; i < 5; ++i) {
      TextEngine engine;
      const auto start = std::chrono::steady_clock::now();
      lines = engine.lines(words, FontWeight::regular, 10, 7, 60, 5).lines;
      const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
      least = std::min(least, taken.count());
    }
    return least;
  };
  for (const QString& part :
       {QStringLiteral("milk and bread "), QStringLiteral("iiiiiiiiii"),
        QStringLiteral("\U0001F468\u200D\U0001F469\u200D\U0001F467\u200D\U0001F466")}) {
    QStringList few;
    QStringList many;
    const double shortTime = seconds(part.repeated(100), few);
    EXPECT_LT(seconds(part.repeated(50'000), many), 50 * shortTime) << part.toStdString();
    EXPECT_TRUE(few == many) << few.join('\n').toStdString() << "\n"
                             << many.join('\n').toStdString();
    EXPECT_EQ(few.size(), 5);
    EXPECT_TRUE(few.last().endsWith(QChar(0x2026)));
  }
}

TEST(Text, GraphemesAreNotCutApart) {
  TextEngine engine;
  const QString accents = QString::fromUtf8("e\xCC\x81"
                                            "e\xCC\x81"
                                            "e\xCC\x81"
                                            "e\xCC\x81");
  for (double width = 8; width < 24; width += 2) {
    const QString shown = engine.elided(accents, FontWeight::regular, 10, width);
    EXPECT_EQ(shown.chopped(shown.endsWith(QChar(0x2026)) ? 1 : 0).size() % 2, 0);
  }
}

TEST(Text, FiguresAreNeverCut) {
  const Text figure = text("1:00:00").size(30).figure(9);
  const double full = widthOf(figure);
  EXPECT_EQ(widthOf(figure, full * 0.5), full * 0.5);
  EXPECT_NEAR(widthOf(figure, 5), full * 9 / 30, 1);
}

TEST(Text, SentencesThatAreNotToBeCutAskForMoreThanTooSmallARoom) {
  const Text sentence = text("Tavrin has no access to your calendars").size(10);
  const double full = widthOf(sentence);
  const auto fits = [&](const Text& words, double width) { return widthOf(words, width) <= width; };
  EXPECT_TRUE(fits(sentence.lines(3).figure(), full * 0.5));
  EXPECT_FALSE(fits(sentence.lines(2).figure(), full * 0.4));
  EXPECT_TRUE(fits(sentence.lines(2), full * 0.4)) << "cut";
}

TEST(Text, BreaksIntoLinesThatFit) {
  TextEngine engine;
  const QString note =
      QStringLiteral("Milk, bread, a kilogram of unreasonably small potatoes\nand soap");
  for (const double width : {40.0, 70.0, 200.0}) {
    const QStringList lines = engine.lines(note, FontWeight::regular, 10, 10, width, 3).lines;
    EXPECT_LE(lines.size(), 3);
    for (const QString& line : lines)
      EXPECT_LE(engine.width(line, FontWeight::regular, 10, TextEngine::Digits::proportional),
                width + 0.5)
          << line.toStdString();
  }
  EXPECT_EQ(engine.lines(QStringLiteral("a\nb"), FontWeight::regular, 10, 10, 100, 5).lines,
            QStringList({QStringLiteral("a"), QStringLiteral("b")}));
  EXPECT_TRUE(
      engine.lines(note, FontWeight::regular, 10, 10, 60, 2).lines.back().endsWith(QChar(0x2026)));
  EXPECT_TRUE(engine.lines({}, FontWeight::regular, 10, 10, 60, 2).lines.join(QString()).isEmpty());
}

TEST(Text, AWordTooLongForItsLineIsFittedElseBrokenByAHyphen) {
  TextEngine engine;
  const auto regular = FontWeight::regular;
  const QString note = QStringLiteral("Groceries: milk");
  const double word = engine.width(QStringLiteral("Groceries:"), regular, 12);
  struct Case {
    double share, least;
    double size;
    bool isBroken = false;
  };
  for (const Case& c :
       {Case{1.01, 9, 12}, Case{0.9, 9, 10.8}, Case{0.9, 12, 12, true}, Case{0.7, 9, 12, true}}) {
    const auto [lines, size] = engine.lines(note, regular, 12, c.least, word * c.share, 3);
    EXPECT_NEAR(size, c.size, 0.02) << c.share;
    EXPECT_EQ(lines[0].endsWith(u'-'), c.isBroken) << lines[0].toStdString();
    EXPECT_EQ(lines.join(u' ').replace(QStringLiteral("- "), QString()), note) << c.share;
    EXPECT_GT(lines[1].indexOf(u':'), c.isBroken ? 2 : -2) << lines[1].toStdString();
    for (const QString& line : lines)
      EXPECT_LE(engine.width(line, regular, size), word * c.share + 0.5) << line.toStdString();
  }
  // On one line there is nowhere to go on.
  EXPECT_TRUE(engine.lines(note, regular, 12, 9, word * 0.7, 1).lines[0].endsWith(QChar(0x2026)));
}

TEST(Text, IsNeverFittedBelowTheLeastCaption) {
  const QString caption = QStringLiteral("Retirement");
  const double full = widthOf(text(caption).size(minimumCaptionSize));
  const auto ink = [&](const char* words, double width) {
    return inkedRect(
        rendered(text(words).size(minimumCaptionSize).colour(palette::white).frame(width, 14),
                 {60, 14}, 4),
        40);
  };
  // A capital stays as high as in a text that has room.
  EXPECT_EQ(ink("Retirement", full * 0.9).height(), ink("Retirement", full).height());
}

TEST(Colour, ReadsHex) {
  EXPECT_EQ(colourFromHex("#121214"), QColor(0x12, 0x12, 0x14));
  EXPECT_EQ(colourFromHex("fbbf24"), QColor(0xFB, 0xBF, 0x24));
  for (const char* wrong : {"", "#", "#12121", "#1212144", "#12121G", "#-12345", "red"})
    EXPECT_FALSE(colourFromHex(wrong)) << wrong;
}

TEST(Colour, ContrastIsTheStandardsRatio) {
  EXPECT_NEAR(contrast(palette::black, palette::white), 21, 0.01);
  EXPECT_NEAR(contrast(QColor(0x77, 0x77, 0x77), palette::white), 4.48, 0.01);
  EXPECT_NEAR(contrast(palette::red, palette::red), 1, 0.001);
}

TEST(Colour, TextHasContrastOnEveryGround) {
  for (const char* hex : {"#121214", "#1E1035", "#4C1D95", "#FBBF24", "#FFFFFF", "#777777",
                          "#1C7ED6", "#031022", "#6FF0CF"}) {
    const QColor ground = *colourFromHex(hex);
    EXPECT_GE(contrast(palette::figure(ground), ground), 4.5 - 0.01) << hex;
    EXPECT_GE(contrast(palette::caption(ground), ground), 4.5 - 0.01) << hex;
    EXPECT_GE(contrast(withContrast(palette::blue, ground, 3), ground), 3) << hex;
  }
}

} // namespace
} // namespace tavrin
