#include "TavrinPlatform/PlainToolTip.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelGrid.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelList.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelToolTip.h"
#include "TavrinWidgetsUI/Kit/Views/TileLayout.h"
#include "TavrinWidgetsUI/Kit/Views/ViewRenderer.h"
#include "Tests/Support/HostileTexts.h"

#include <QTextDocument>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

namespace tavrin {
namespace {

bool steers(const QString& words) {
  static const QString all = QStringLiteral("\r\x1b\x07\u202E\u2066\u2069\u200E\u200F\u061C\u2028"
                                            "\u009B\uFEFF") +
                             QChar(u'\0');
  return std::any_of(words.begin(), words.end(), [](QChar unit) { return all.contains(unit); }) ||
         !words.isValidUtf16();
}

/// What a reader sees of a tooltip.
QString seen(const QString& tip) {
  if (!Qt::mightBeRichText(tip))
    return tip;
  QTextDocument document;
  document.setHtml(tip);
  return document.toPlainText();
}

/// White space aside, and of a long text the beginning.
QString compared(const QString& words) {
  QString bare;
  for (const QChar each : words)
    if (!each.isSpace() && each != QChar(u'\u2060'))
      bare += each;
  return bare.left(200);
}

TEST(ForeignTextInTheKit, EveryPlaceShowsItLetterByLetter) {
  PanelText line({}, PanelTextStyle::body);
  line.setSingleLine(true);
  line.resize(20, 20);
  PanelText block;
  PanelButton button(PanelButton::Kind::quiet, "x");
  PanelSwatch swatch(palette::blue, "x", {});
  PanelEmptyState empty("circle", "x");
  PanelList list("x");
  PanelGrid grid("x", 40);
  ViewRenderer renderer;
  std::size_t number = 0;
  for (const std::string& text : hostileTexts(10'000)) {
    const QString words = QString::fromStdString(text);
    line.setWords(words);
    block.setWords(words);
    button.setTitle(words);
    swatch.setColour(palette::blue, words);
    empty.setSentence("circle", words);
    PanelRow row;
    row.title = words;
    row.subtitle = words;
    list.setRows({row});
    PanelCell cell;
    cell.name = words;
    grid.setCells({cell});
    const auto listed = [&](int role) { return list.model()->index(0, 0).data(role).toString(); };
    const auto inGrid = [&](int role) { return grid.model()->index(0, 0).data(role).toString(); };
    const QString plain = plainWords(words);
    EXPECT_EQ(block.textFormat(), Qt::PlainText);
    for (const QString& shown :
         {line.text(), block.text(), button.title(), button.accessibleName(),
          swatch.accessibleName(), empty.accessibleName(), listed(Qt::DisplayRole),
          listed(Qt::AccessibleTextRole), inGrid(Qt::DisplayRole), inGrid(Qt::AccessibleTextRole),
          tavrin::text(words).string})
      ASSERT_FALSE(steers(shown)) << shown.toStdString();
    for (const QString& tip : {toolTipText(words), toolTipText(grid.cell(0).name)}) {
      ASSERT_FALSE(steers(tip)) << text;
      ASSERT_EQ(compared(seen(tip)), compared(plain)) << tip.toStdString();
      ASSERT_FALSE(tip.contains("<img")) << tip.toStdString();
      ASSERT_LT(tip.size(), 20'000);
    }
    if (number++ % 50 == 0) {
      TileContent content;
      content.figure = words;
      content.caption = words;
      renderer.render(tile(content, {48, 1}), {48, 48}, 1);
      for (const auto& element : renderer.elements())
        ASSERT_FALSE(steers(element.label + element.value));
    }
  }
}

TEST(ForeignTextInTheKit, AToolTipOfMarkupDescribesItselfWithoutEscapes) {
  QWidget widget;
  setPlainToolTip(&widget, "<b>x</b>");
  EXPECT_EQ(seen(toolTipText(plainToolTip(&widget))), "<b>x</b>");
  EXPECT_EQ(widget.accessibleDescription(), "<b>x</b>");
  setPlainToolTip(&widget, "y");
  EXPECT_EQ(widget.accessibleDescription(), "y");
}

/// Everything in the toolkit that guesses or reads a format is called in one place, or nowhere.
TEST(ForeignTextInTheKit, NothingElseLetsTheToolkitGuessAFormat) {
  namespace fs = std::filesystem;
  struct Rule {
    std::string call;
    std::vector<std::string> allowed;
  };
  const Rule rules[] = {
      {"setToolTip(", {"PanelToolTip.cpp"}},
      {"QToolTip::showText", {"PlainToolTip.h"}},
      {"public QLabel", {"PanelText.h"}},
      {"new QLabel", {"QuickLook.cpp"}},
      {"QMessageBox", {}},
      {"QErrorMessage", {}},
      {"QTextBrowser", {}},
      {"QWhatsThis", {}},
      {"setWhatsThis(", {}},
      {"QSystemTrayIcon", {}},
      {"setHtml(", {}},
      {"insertHtml(", {}},
      {"setMarkdown(", {}},
      {"appendHtml(", {}},
      {"QStaticText", {}},
      {"Qt::RichText", {}},
      {"Qt::AutoText", {}},
      {"Qt::MarkdownText", {}},
  };
  for (const char* folder : {"TavrinWidgetsUI", "TavrinPlatform", "TavrinSlot", "TavrinHost"})
    for (const auto& entry :
         fs::recursive_directory_iterator(fs::path(TAVRIN_SOURCE_DIR) / folder)) {
      const auto extension = entry.path().extension();
      if (extension != ".cpp" && extension != ".h")
        continue;
      std::ifstream file(entry.path());
      for (std::string line; std::getline(file, line);)
        for (const Rule& rule : rules) {
          const auto name = entry.path().filename().string();
          const bool isAllowed =
              std::find(rule.allowed.begin(), rule.allowed.end(), name) != rule.allowed.end();
          EXPECT_TRUE(isAllowed || line.find(rule.call) == std::string::npos)
              << entry.path() << ": " << line;
        }
    }
}

} // namespace
} // namespace tavrin
