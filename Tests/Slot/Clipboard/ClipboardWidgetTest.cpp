#include "TavrinCore/Kinds/Clipboard/ClipboardSettings.h"
#include "TavrinSlot/Controllers/ClipboardWidget.h"

#include "TavrinWidgetsUI/Clipboard/ClipboardPanelView.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelControls.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelList.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "Tests/Storage/TemporaryFolder.h"
#include "Tests/Support/SlotRig.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QLabel>
#include <QListView>
#include <gmock/gmock.h>

namespace tavrin::test {
namespace {

using testing::Contains;
using testing::ElementsAre;

void keyClick(QWidget* widget, Qt::Key key, const QString& text = {}) {
  for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
    QKeyEvent event(type, key, Qt::NoModifier, text);
    QCoreApplication::sendEvent(widget, &event);
  }
}
void type(QWidget* widget, const QString& text) {
  for (const QChar character : text)
    keyClick(widget, Qt::Key_unknown, QString(character));
}

class ClipboardWidget : public testing::Test {
protected:
  void SetUp() override {
    rig_.platform.files.variables["TAVRIN_APP_SUPPORT_DIR"] = folder_.path().string();
    ClipboardSettings settings;
    settings.historyLimit = 20'000;
    controller_ = begun<ClipboardWidgetController>(
        rig_.context(), DockWidget(UUID::random(), "Clipboard", 3, settings, 1));
    rig_.platform.loop.runBackground();
  }
  void copy(const std::string& text) {
    rig_.platform.fakePasteboard.copy({{"text/plain", text}});
    rig_.platform.loop.runBackground();
  }
  QWidget* open() {
    controller_->togglePanel();
    auto* view = rig_.panel.rootView();
    view->setAttribute(Qt::WA_DontShowOnScreen);
    view->show();
    return view;
  }
  PanelList& list() {
    return *dynamic_cast<PanelList*>(rig_.panel.rootView()->findChild<QListView*>());
  }
  QLineEdit& search() { return *rig_.panel.rootView()->findChild<QLineEdit*>(); }
  std::vector<std::string> titles() {
    std::vector<std::string> all;
    for (int i = 0; i < list().count(); ++i)
      all.push_back(list().row(i).title.toStdString());
    return all;
  }
  std::vector<std::string> words() {
    std::vector<std::string> all;
    for (auto* label : rig_.panel.rootView()->findChildren<QLabel*>())
      if (!label->text().isEmpty() && label->isVisibleTo(rig_.panel.rootView()))
        all.push_back(label->text().toStdString());
    return all;
  }
  std::string copied() { return rig_.platform.fakePasteboard.writtenText(); }
  std::string tileValue() { return rig_.platform.tile.value; }

  TemporaryFolder folder_;
  SlotRig rig_;
  Living<ClipboardWidgetController> controller_;
};

TEST_F(ClipboardWidget, CountsWhatIsNewUntilThePanelOpens) {
  EXPECT_EQ(tileValue(), "0 items");
  copy("one");
  copy("two");
  EXPECT_EQ(tileValue(), "2 items, 2 new");
  open();
  EXPECT_EQ(tileValue(), "2 items");
  copy("three");
  EXPECT_EQ(tileValue(), "3 items") << "seen as it comes";
  EXPECT_THAT(titles(), ElementsAre("three", "two", "one"));
}

TEST_F(ClipboardWidget, SaysWhatThereIsNot) {
  open();
  EXPECT_THAT(words(), Contains("Nothing copied yet"));
  EXPECT_THAT(words(), Contains("Copy something on your computer and it will show up here."));
  copy("one");
  type(&search(), "zebra");
  EXPECT_THAT(words(), Contains("Try a different word."));
}

TEST_F(ClipboardWidget, SearchesAsOneTypesAndReturnCopies) {
  copy("alpha one");
  copy("beta");
  copy("Alpha two");
  open();
  type(&search(), "alpha");
  EXPECT_THAT(titles(), ElementsAre("Alpha two", "alpha one"));
  keyClick(&search(), Qt::Key_Return);
  EXPECT_EQ(copied(), "Alpha two");
  EXPECT_FALSE(rig_.panel.isShown());
}

TEST_F(ClipboardWidget, TheListWorksByKeyboardAlone) {
  copy("one");
  copy("aB3dE5gH7jK9");
  copy("three");
  open();
  keyClick(&list(), Qt::Key_Home);
  keyClick(&list(), Qt::Key_Down);
  EXPECT_EQ(titles()[1], "••••••••••••");
  keyClick(&list(), Qt::Key_Right);
  keyClick(&list(), Qt::Key_Return);
  EXPECT_EQ(titles()[1], "aB3dE5gH7jK9");
  keyClick(&list(), Qt::Key_Home);
  keyClick(&list(), Qt::Key_Delete);
  EXPECT_THAT(titles(), ElementsAre("aB3dE5gH7jK9", "one"));
  list().onAction(1, 1); // pins
  EXPECT_EQ(list().row(1).actions.back().name, "Unpin");
  rig_.press("Clear");
  EXPECT_THAT(titles(), ElementsAre("one"));
  list().setCurrentRow(0);
  keyClick(&list(), Qt::Key_Return);
  EXPECT_EQ(copied(), "one");
}

TEST_F(ClipboardWidget, WhatWasNotKeptIsSaidAndWhatWasShownIsHiddenAgain) {
  copy("aB3dE5gH7jK9");
  rig_.platform.fakePasteboard.copy({{"image/png", std::string(3'000'000, 'x')}});
  rig_.platform.loop.runBackground();
  auto* view = open();
  list().setCurrentRow(0);
  keyClick(&list(), Qt::Key_Return);
  EXPECT_TRUE(rig_.panel.isShown());
  EXPECT_TRUE(rig_.platform.fakePasteboard.written.empty());
  const std::string sentence = "That image was too large to be kept. Only its size is known.";
  EXPECT_THAT(words(), Contains(sentence));
  list().onAction(1, 0);
  EXPECT_EQ(titles()[1], "aB3dE5gH7jK9");
  view->hide();
  EXPECT_EQ(titles()[1], "••••••••••••");
  view->show();
  EXPECT_THAT(words(), testing::Not(Contains(sentence)));
}

TEST_F(ClipboardWidget, PicturesAreMadeInTheBackgroundAtTheSizeShown) {
  QImage image(640, 320, QImage::Format_RGB32);
  image.fill(Qt::red);
  QByteArray bytes;
  QBuffer buffer(&bytes);
  image.save(&buffer, "PNG");
  rig_.platform.fakePasteboard.copy({{"image/png", bytes.toStdString()}});
  rig_.platform.fakePasteboard.copy({{"image/png", "no picture"}});
  rig_.platform.loop.runBackground();
  open();
  EXPECT_TRUE(list().row(1).image.isNull());
  list().row(0);
  EXPECT_GE(rig_.platform.loop.waitingBackground(), 1U);
  rig_.platform.loop.runBackground();
  EXPECT_EQ(list().row(1).image.size(), QSize(64, 32));
  EXPECT_TRUE(list().row(0).image.isNull());
  EXPECT_EQ(list().row(0).symbol, "photo");
}

TEST_F(ClipboardWidget, ALinkIsShownByWhatItsPageSays) {
  rig_.platform.fakeHTTP.hosts["www.tides.com"] = {"93.184.216.34"};
  copy("https://www.tides.com/march");
  open();
  EXPECT_THAT(titles(), ElementsAre("https://www.tides.com/march"));
  rig_.platform.loop.advance(0.1);
  rig_.platform.fakeHTTP.answer(
      "tides", {.status = 200,
                .body = "<title>Tides in March</title><meta name=description content='When to go'>",
                .contentType = "text/html"});
  rig_.platform.loop.runBackground();
  EXPECT_THAT(titles(), ElementsAre("Tides in March"));
  EXPECT_THAT(list().row(0).subtitle.toStdString(),
              testing::MatchesRegex("tides\\.com · .* · When to go"));
}

TEST_F(ClipboardWidget, TenThousandItems) {
  for (int i = 0; i < 10'000; ++i)
    rig_.platform.fakePasteboard.copy({{"text/plain", "item " + std::to_string(i)}});
  controller_->update(DockWidget(
      UUID::random(), "Clipboard", 3,
      [] {
        ClipboardSettings settings;
        settings.historyLimit = 10'000;
        settings.showLastPreviewOnTile = true;
        return settings;
      }(),
      1));
  rig_.platform.loop.runBackground();
  QElapsedTimer clock;
  clock.start();
  open();
  QPixmap picture(rig_.panel.rootView()->size());
  rig_.panel.rootView()->render(&picture);
  const auto opened = clock.nsecsElapsed();
  EXPECT_EQ(list().count(), 10'000);
  type(&search(), "item 999");
  EXPECT_EQ(list().count(), 11);
  RecordProperty("openingMicroseconds", std::to_string(opened / 1000));
}

} // namespace
} // namespace tavrin::test
