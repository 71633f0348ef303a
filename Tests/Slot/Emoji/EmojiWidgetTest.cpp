#include "TavrinCore/Kinds/Emoji/EmojiSettings.h"
#include "TavrinStorage/EmojiStore.h"
#include "TavrinWidgetsUI/Emoji/EmojiPanelView.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelGrid.h"
#include "TavrinWidgetsUI/Kit/Views/ViewWidget.h"
#include "Tests/Slot/SlotFixture.h"
#include "Tests/Support/InLanguage.h"
#include "Tests/Support/Keys.h"

#include <QAccessible>
#include <QApplication>
#include <QLineEdit>
#include <QRadioButton>
#include <fstream>

namespace tavrin::test {
namespace {

constexpr const char* emojiTest =
    "# group: Smileys\n"
    "1F600 ; fully-qualified # 😀 E1.0 grinning face\n"
    "1F602 ; fully-qualified # 😂 E0.6 tears of joy\n"
    "# group: People\n"
    "1F44B ; fully-qualified # 👋 E0.6 waving hand\n"
    "1F44B 1F3FB ; fully-qualified # 👋🏻 E1.0 waving hand: light\n";

class EmojiWidget : public SlotTest {
protected:
  void SetUp() override {
    SlotTest::SetUp();
    std::filesystem::create_directories(folder_ / "unicode" / "emoji");
    std::ofstream(folder_ / "unicode" / "emoji" / "emoji-test.txt") << emojiTest;
    platform_.files.unicode = folder_ / "unicode";
  }
  EmojiPanelView* open(const EmojiSettings& settings = {}) {
    if (!app_)
      start(settings, 2);
    click();
    platform_.loop.runBackground();
    // As the popover does, each time anew.
    panel()->hide();
    panel()->show();
    return dynamic_cast<EmojiPanelView*>(panel());
  }
  QLineEdit* search() const { return panel()->findChild<QLineEdit*>(); }
  PanelGrid* grid() const { return all<PanelGrid>().back(); }
  QRadioButton* tone(const QString& name) const {
    for (auto* button : all<QRadioButton>())
      if (button->accessibleName() == name)
        return button;
    return nullptr;
  }
  std::string copied() const { return platform_.fakePasteboard.writtenText(); }
  std::vector<Emoji> recents() {
    return EmojiStore(folder_ / "emoji.json", platform_.center).history().recents;
  }
};

TEST_F(EmojiWidget, PickingCopiesKeepsAndCloses) {
  auto* view = open();
  EXPECT_EQ(view->shownCount(), 2) << "the first group, while there are no recents";
  grid()->onOpen(1);
  EXPECT_EQ(copied(), "😂");
  EXPECT_FALSE(platform_.fakePopover.isShown());
  EXPECT_EQ(recents(), (std::vector<Emoji>{{"😂", ""}}));
  EXPECT_EQ(platform_.center.count("dev.quellby.tavrin.emoji-changed"), 1);
  view = open();
  EXPECT_EQ(view->shown(0)->text, "😂") << "recents come first from now on";
}

TEST_F(EmojiWidget, KeyboardAloneFindsAndCopies) {
  auto* view = open();
  typeText(search(), "hand");
  EXPECT_EQ(view->shownCount(), 1);
  pressKey(search(), Qt::Key_Return);
  EXPECT_EQ(copied(), "👋");
  view = open();
  EXPECT_TRUE(search()->text().isEmpty());
  view->showGroup(0);
  pressKey(grid(), Qt::Key_Right);
  pressKey(grid(), Qt::Key_Right);
  pressKey(grid(), Qt::Key_Return);
  EXPECT_EQ(copied(), "😂");
  open();
  typeText(search(), "qqq");
  EXPECT_TRUE(words().contains("Nothing found"));
  const auto writes = platform_.fakePasteboard.written.size();
  pressKey(search(), Qt::Key_Return);
  EXPECT_EQ(platform_.fakePasteboard.written.size(), writes);
}

TEST_F(EmojiWidget, NothingMovesWhileOneSearches) {
  EmojiStore(folder_ / "emoji.json", platform_.center).add({"😂", ""}, 24);
  auto* view = open();
  EXPECT_EQ(view->shownCount(), 1);
  const int height = view->fittingSize().height();
  for (const char* typed : {"g", "gr", "grxq", ""}) {
    search()->setText(typed);
    QApplication::processEvents();
    EXPECT_EQ(view->fittingSize().height(), height) << typed;
  }
  for (const int group : {0, 1, -1}) {
    view->showGroup(group);
    EXPECT_EQ(view->fittingSize().height(), height) << group;
  }
  button("Clear Recents")->click();
  QApplication::processEvents();
  EXPECT_TRUE(words().contains("No emoji used yet"));
  EXPECT_EQ(view->fittingSize().height(), height);
}

TEST_F(EmojiWidget, GroupsAndTheWideTileAreCalledInTheUsersLanguage) {
  const InLanguage german(
      {{"Food & Drink", "Essen und Trinken"}, {"Emoji", "Emojis"}, {"Recents", "Zuletzt"}}, "de");
  std::ofstream(folder_ / "unicode" / "emoji" / "emoji-test.txt")
      << "# group: Food & Drink\n1F34E ; fully-qualified # 🍎 E0.6 red apple\n"
         "# group: Newer\n1F44B ; fully-qualified # 👋 E0.6 waving hand\n";
  open();
  auto* tabs = all<PanelGrid>().front();
  EXPECT_EQ(tabs->cell(0).name, "Zuletzt");
  EXPECT_EQ(tabs->cell(1).name, "Essen und Trinken");
  EXPECT_EQ(tabs->cell(2).name, "Newer") << "as Unicode calls it";
  EXPECT_EQ(platform_.tile.name, "Emojis") << "not its first button";
}

TEST_F(EmojiWidget, TheToneIsSavedAndCopied) {
  auto* view = open();
  tone("Dark")->click();
  EXPECT_EQ(platform_.center.count("dev.quellby.tavrin.widgetsChanged"), 1);
  view->showGroup(1);
  grid()->onOpen(0);
  EXPECT_EQ(copied(), "👋🏿");
  EXPECT_EQ(recents(), (std::vector<Emoji>{{"👋", "👋🏻"}}));
  // Another tone from outside, while the panel is open.
  open();
  write(EmojiSettings{EmojiSkinTone::light, 24}, 2);
  announce();
  grid()->onOpen(0);
  EXPECT_EQ(copied(), "👋🏻");
}

TEST_F(EmojiWidget, TheTonesAreOneRadioGroup) {
  open();
  const auto tones = all<QRadioButton>();
  ASSERT_EQ(tones.size(), 6U);
  EXPECT_TRUE(tone("Standard")->isChecked());
  const auto* one = QAccessible::queryAccessibleInterface(tone("Medium"));
  EXPECT_EQ(one->role(), QAccessible::RadioButton);
  auto* group = one->parent();
  while (group != nullptr && group->role() != QAccessible::Grouping)
    group = group->parent();
  ASSERT_NE(group, nullptr);
  EXPECT_EQ(group->text(QAccessible::Name), "Skin tone");
  panel()->activateWindow();
  QApplication::processEvents();
  tone("Standard")->setFocus();
  pressKey(tone("Standard"), Qt::Key_Right);
  pressKey(tone("Light"), Qt::Key_Right);
  EXPECT_TRUE(tone("Medium light")->isChecked());
  EXPECT_FALSE(tone("Standard")->isChecked());
  EXPECT_EQ(platform_.center.count("dev.quellby.tavrin.widgetsChanged"), 2);
  // As assistive technology does it.
  QAccessible::queryAccessibleInterface(tone("Dark"))
      ->actionInterface()
      ->doAction(QAccessibleActionInterface::toggleAction());
  EXPECT_EQ(platform_.center.count("dev.quellby.tavrin.widgetsChanged"), 3);
}

TEST_F(EmojiWidget, WhatIsUsedMostIsFoundFirst) {
  std::ofstream(folder_ / "unicode" / "emoji" / "emoji-test.txt")
      << "# group: Animals\n1F436 ; fully-qualified # 🐶 E0.6 dog face\n"
         "1F415 ; fully-qualified # 🐕 E0.7 dog\n1F9AE ; fully-qualified # 🦮 E12.0 guide "
         "dog\n";
  auto* view = open();
  typeText(search(), "dog");
  EXPECT_EQ(view->shown(0)->text, "🐕") << "its name";
  EmojiStore store(folder_ / "emoji.json", platform_.center);
  for (const char* emoji : {"🦮", "🦮", "🐶"})
    store.add({emoji, ""}, 24);
  search()->clear();
  typeText(search(), "dog");
  EXPECT_EQ(view->shown(0)->text, "🦮");
  EXPECT_EQ(view->shown(1)->text, "🐶");
  button("Clear Recents")->click();
  EXPECT_TRUE(EmojiStore(folder_ / "emoji.json", platform_.center).history().uses.empty());
}

TEST_F(EmojiWidget, AllSlotsShareTheRecents) {
  auto* view = open();
  EmojiStore elsewhere(folder_ / "emoji.json", platform_.center);
  const int before = platform_.tile.displays;
  elsewhere.add({"🦊", ""}, 24);
  EXPECT_GT(platform_.tile.displays, before);
  view->showGroup(-1);
  EXPECT_EQ(view->shown(0)->text, "🦊");
  button("Clear Recents")->click();
  EXPECT_TRUE(recents().empty());
  EXPECT_EQ(view->shownCount(), 0);
  EXPECT_TRUE(words().contains("No emoji used yet"));
}

TEST_F(EmojiWidget, RecentsOfAnyNonsenseAreShownAsFarAsTheyGo) {
  JSONValue::Array entries;
  for (int i = 0; i < 500; ++i)
    entries.push_back(encode(Emoji{i % 2 == 0 ? std::string(1000, 'x') : "🦊", "\n"}));
  writeJSONFile(folder_ / "emoji.json", JSONValue::Object{{"recents", entries}});
  auto* view = open();
  EXPECT_EQ(view->shownCount(), EmojiHistory::mostLimit);
  std::ofstream(folder_ / "emoji.json") << "{\"recents\": 7}";
  platform_.center.post("dev.quellby.tavrin.emoji-changed");
  EXPECT_EQ(view->shownCount(), EmojiHistory::mostLimit) << "what was read last stays";
  grid()->onOpen(0);
  EXPECT_EQ(copied(), "🦊") << "a file that cannot be read keeps nobody from copying";
  open();
  EXPECT_TRUE(words().filter("Failed to read").size() == 1);
}

TEST_F(EmojiWidget, SaysWhenThereAreNoData) {
  platform_.files.unicode = folder_ / "none";
  open();
  EXPECT_TRUE(words().contains("This computer has no emoji data"));
}

TEST_F(EmojiWidget, WhatThePanelNeededGoesWithIt) {
  auto* view = open();
  EXPECT_EQ(view->shownCount(), 2);
  click();
  EXPECT_FALSE(view->shown(0)) << "the table is gone";
  open();
  EXPECT_TRUE(view->shown(0));
}

} // namespace
} // namespace tavrin::test
