#include "Tools/Gallery/CutWords.h"

#include "TavrinWidgetsUI/Kit/Words.h"
#include "Tools/Gallery/ShownTexts.h"

#include <QFontMetricsF>
#include <QLabel>
#include <QSpinBox>
#include <algorithm>
#include <array>

namespace tavrin {

namespace {

/// Letters that the pseudo-language has in place of ASCII's; scripts/texts has the same.
bool isPseudo(QString words) {
  words.remove(QStringLiteral("~/"));
  static const QString letters = QStringLiteral("ÅÉÎÖÛåéîöûýñçšÑÇŠ[]~");
  return std::any_of(words.begin(), words.end(), [](QChar c) { return letters.contains(c); });
}

/// What users write and name: the samples' own, some of which are translated as they are shown.
const QStringList& written() {
  static const QStringList all = [] {
    QStringList texts{QStringLiteral("Ada's Phone"),
                      QStringLiteral("Kitchen Tablet with a long name"),
                      QStringLiteral("Kitchen Tablet with a rather long name of its own"),
                      QStringLiteral("a-very-long-organisation")};
    for (const char* sample :
         {"Design review", "Lunch with Ada", "Grandmother's birthday", "Pay the rent", "Call Ada",
          "Milk, bread\nCall Ada", "Untitled event", "Untitled reminder"})
      texts << worded(sample);
    return texts;
  }();
  return all;
}

/// Whether the cut goes through what a user wrote.
bool endsInWritten(const QString& line) {
  if (line.contains(QStringLiteral("tavrin-gallery-"))) // a folder of the samples' own
    return true;
  return std::any_of(written().begin(), written().end(), [&](const QString& text) {
    if (text.contains(line))
      return true;
    for (qsizetype length = text.size(); length > 0; --length)
      if (line.endsWith(text.left(length)))
        return text.left(length) != u"[";
    return false;
  });
}

/// Whether the end of a text of the pseudo-language is missing.
bool isCut(const QString& line) {
  const qsizetype at = line.lastIndexOf(u'…');
  if (at < 0 || !isPseudo(line.left(at)) || endsInWritten(line.left(at)))
    return false;
  // A text that has an ellipsis itself goes on behind it.
  return !line.mid(at).contains(u']');
}

/// Whether a tile's own words, which it says in every language, go on behind the ellipsis.
bool isOwnCut(const QString& line) {
  const qsizetype at = line.lastIndexOf(u'…');
  return at > 0 &&
         std::ranges::any_of(std::array{"Click to write a note", "Not sent", "Does not answer"},
                             [&](const char* own) { return worded(own).contains(line.left(at)); });
}

/// What is cut of the texts as they were painted.
QStringList cutOf(const std::vector<ShownText>& texts) {
  QStringList cut;
  for (const ShownText& text : texts)
    if (isCut(text.words) || isOwnCut(text.words))
      cut << text.words;
    else if (text.isClipped)
      cut << text.words + QStringLiteral(" (past its edge)");
  return cut;
}

/// Labels break their lines by themselves, and paint what fits.
void addCutLabels(const PanelView& panel, QStringList& cut) {
  for (const QLabel* label : panel.findChildren<QLabel*>()) {
    if (!label->isVisibleTo(&panel) || !label->wordWrap() || !isPseudo(label->text()))
      continue;
    const QFontMetricsF metrics(label->font());
    double widest = 0;
    for (const QString& word : label->text().split(u' '))
      widest = std::max(widest, metrics.horizontalAdvance(word));
    if (label->heightForWidth(label->width()) > label->height() || widest > label->width() + 1)
      cut << label->text() + QStringLiteral(" (its label)");
  }
}

void addCutSteppers(const PanelView& panel, QStringList& cut) {
  for (const QSpinBox* box : panel.findChildren<QSpinBox*>())
    if (box->isVisibleTo(&panel) && box->width() < box->sizeHint().width())
      cut << box->text() + QStringLiteral(" (its stepper)");
}

} // namespace

QStringList cutWords(const AnyView& tile, const TileSize& size) {
  return cutOf(shownTexts(tile, size, Wanted::edges));
}

QStringList cutWords(PanelView& panel) {
  QStringList cut = cutOf(shownTexts(panel, Wanted::edges));
  addCutLabels(panel, cut);
  addCutSteppers(panel, cut);
  return cut;
}

} // namespace tavrin
