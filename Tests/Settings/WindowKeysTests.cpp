#include "TavrinCore/Kinds/Files/ShelfSettings.h"
#include "TavrinSettings/Form/WidgetForm.h"
#include "TavrinSettings/Strip/StripTile.h"
#include "TavrinSettings/Widget/TilePreview.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Views/Colour.h"
#include "Tests/Settings/WindowRig.h"
#include "Tests/Support/Keys.h"

#include <QAccessible>
#include <QDropEvent>
#include <QMimeData>
#include <QScreen>
#include <QUrl>
#include <gmock/gmock.h>

namespace tavrin {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// A window of a Clock and a Timer.
class WindowKeysTest : public test::WindowTest {
protected:
  WindowKeysTest() {
    for (const char* kind : {"clock", "timer"})
      EXPECT_EQ(run({"widgets", "add", kind, "--place"}), 0) << errors.str();
    open();
  }
  std::string focus() const {
    return window->focusWidget() == nullptr ? std::string()
                                            : window->focusWidget()->accessibleName().toStdString();
  }
  /// Where Tab leads, from the window's first stop on.
  std::vector<std::string> stops() const {
    std::vector<std::string> names;
    for (QWidget* one = window->nextInFocusChain(); one != window; one = one->nextInFocusChain())
      if ((one->focusPolicy() & Qt::TabFocus) == Qt::TabFocus && one->isVisible() &&
          one->isEnabled() && one->focusProxy() == nullptr)
        names.push_back(one->accessibleName().toStdString());
    return names;
  }
  UUID idOf(const std::string& name) {
    test::SilentContext context(platform);
    const WidgetLibrary library(context);
    for (const auto& widget : library.file().widgets)
      if (widget.name == name)
        return widget.id;
    throw std::runtime_error("no widget " + name);
  }
};

TEST_F(WindowKeysTest, TabGoesAsTheWindowIsRead) {
  EXPECT_EQ(focus(), "Search widgets") << "where most begin";
  button("Clock, place 1 of 2")->setFocus();
  test::pressKey(window->focusWidget(), Qt::Key_Delete);
  QApplication::processEvents();
  const auto found = stops();
  const auto place = [&](const std::string& name) {
    const auto at = std::ranges::find(found, name);
    EXPECT_NE(at, found.end()) << name;
    return at - found.begin();
  };
  const auto all = testing::PrintToString(found);
  EXPECT_EQ(place("Undo Take Off Clock"), 0) << all;
  EXPECT_LT(place("Undo Take Off Clock"), place("Timer, place 1 of 1")) << all;
  EXPECT_LT(place("Timer, place 1 of 1"), place("Settings")) << all;
  EXPECT_LT(place("Settings"), place("Search widgets")) << all;
  EXPECT_LT(place("Search widgets"), place("Undo")) << all << ": the offer at the foot";
}

TEST_F(WindowKeysTest, ReturnPressesTheButtonThatHasTheKeyboard) {
  press("Add Clock");
  auto* undo = button("Undo Add Clock");
  undo->setFocus();
  test::pressKey(undo, Qt::Key_Return);
  QApplication::processEvents();
  EXPECT_TRUE(button("Redo Add Clock")->isEnabled());
  EXPECT_NO_THROW(button("Clock, place 1 of 2"));
}

TEST_F(WindowKeysTest, AWidgetThatIsAskedForHasTheKeyboardInItsFormAndEscapeLeadsToItsTile) {
  app->edit(idOf("Timer").text());
  QApplication::processEvents();
  EXPECT_EQ(focus(), "Name");
  test::pressKey(window->focusWidget(), Qt::Key_Escape);
  EXPECT_EQ(focus(), "Timer, place 2 of 2");
  press("Settings");
  EXPECT_EQ(focus(), "Name");
  test::pressKey(window->focusWidget(), Qt::Key_Escape);
  EXPECT_EQ(focus(), "Timer, place 2 of 2");
}

TEST_F(WindowKeysTest, WhatIsTypedAfterReturnInTheSearchIsAnotherSearch) {
  auto* search = shown<PanelSearchField>().front();
  search->setFocus();
  search->setText("note");
  test::pressKey(search, Qt::Key_Return);
  QApplication::processEvents();
  EXPECT_EQ(search->selectedText(), "note") << search->text().toStdString();
}

TEST_F(WindowKeysTest, ItIsNoLargerThanTheScreenAndAFormComesBeforeItsPreview) {
  const QSize room = window->screen()->availableSize();
  EXPECT_LT(window->width(), room.width());
  EXPECT_LT(window->height(), room.height());
  app->edit(idOf("Clock").text());
  window->resize(640, 480);
  QApplication::processEvents();
  EXPECT_TRUE(shown<TilePreview>().empty());
  ASSERT_FALSE(shown<WidgetForm>().empty());
  EXPECT_GE(shown<WidgetForm>().front()->visibleRegion().boundingRect().height(), 150);
  window->resize(700, 720);
  QApplication::processEvents();
  EXPECT_FALSE(shown<TilePreview>().empty());
}

TEST_F(WindowKeysTest, AShelfOnTheStripTakesFiles) {
  press("Add Shelf");
  const auto drop = [&](const QString& tile) {
    auto* onto = button(tile);
    QMimeData data;
    data.setUrls({QUrl(QStringLiteral("https://example.org")), QUrl::fromLocalFile("/tmp/a.txt")});
    QDropEvent event({9, 9}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QDragEnterEvent enters({9, 9}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(onto, &enters);
    QApplication::sendEvent(onto, &event);
    return onto->acceptDrops();
  };
  EXPECT_FALSE(drop("Clock, place 1 of 3"));
  EXPECT_TRUE(drop("Shelf, place 3 of 3"));
  test::SilentContext context(platform);
  const auto widgets = WidgetLibrary(context).file().widgets;
  EXPECT_THAT(widgets.back().kind.get<ShelfSettings>()->paths, ElementsAre("/tmp/a.txt"));
  EXPECT_NO_THROW(button("Undo Set Up Shelf"));
}

TEST_F(WindowKeysTest, AButtonThatCannotBePressedIsFainter) {
  for (const bool isDark : {false, true})
    for (const bool hasContrast : {false, true}) {
      window->setAppearance({.dark = isDark, .highContrast = hasContrast});
      const auto ink = [&](bool isEnabled) {
        auto* undo = button("Undo");
        undo->setEnabled(isEnabled);
        const QImage image = undo->grab().toImage();
        const QColor ground = image.pixelColor(1, 1);
        double most = 1;
        for (int y = 0; y < image.height(); ++y)
          for (int x = 0; x < image.width(); ++x)
            most = std::max(most, contrast(image.pixelColor(x, y), ground));
        return most;
      };
      EXPECT_GT(ink(true), 4.4);
      EXPECT_LT(ink(false), 0.6 * ink(true)) << isDark << hasContrast;
    }
}

TEST_F(WindowKeysTest, AssistiveTechnologyFindsAWindowItsTilesInOrderAndAWayToCloseIt) {
  auto* found = QAccessible::queryAccessibleInterface(window);
  EXPECT_EQ(found->role(), QAccessible::Window);
  std::vector<std::string> parts;
  auto* strip = QAccessible::queryAccessibleInterface(button("Add a widget")->parentWidget());
  for (int i = 0; i < strip->childCount(); ++i)
    parts.push_back(strip->child(i)->text(QAccessible::Name).toStdString());
  EXPECT_THAT(parts, ElementsAre("Clock, place 1 of 2", "Timer, place 2 of 2", "Add a widget"));
  bool isClosed = false;
  window->onClose = [&] { isClosed = true; };
  found->actionInterface()->doAction(QStringLiteral("close"));
  QApplication::processEvents();
  EXPECT_TRUE(isClosed);
}

} // namespace
} // namespace tavrin
