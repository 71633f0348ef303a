#include "TavrinSettings/Strip/FreePlace.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelControls.h"
#include "Tests/Settings/WindowRig.h"

#include <QApplication>
#include <gmock/gmock.h>

namespace tavrin {
namespace {

using test::WindowTest;
using testing::HasSubstr;
using testing::IsEmpty;

TEST_F(WindowTest, WhatShowsNoWordsSaysWhatItDoes) {
  for (const auto& kind : allKinds())
    ASSERT_EQ(run({"widgets", "add", std::string(kind.key)}), 0) << errors.str();
  open();
  EXPECT_THAT(mute(), IsEmpty());
  test::SilentContext context(platform);
  const auto widgets = WidgetLibrary(context).file().widgets;
  for (const auto& entry : widgets) {
    app->edit(entry.id.text());
    QApplication::processEvents();
    EXPECT_THAT(mute(), IsEmpty()) << entry.name;
  }
  for (const auto* page : {"Dock Layouts", "This Computer"}) {
    press(QString::fromUtf8(page));
    EXPECT_THAT(mute(), IsEmpty()) << page;
  }
}

TEST_F(WindowTest, AFreePlaceLeadsToWhatCanBePutThere) {
  open();
  const auto* search = shown<PanelSearchField>().front();
  const QRect before(search->mapTo(window, QPoint()), search->size());
  press(QStringLiteral("Add a widget"));
  EXPECT_THAT(words(), HasSubstr("It comes to the marked place"));
  EXPECT_TRUE(search->hasFocus());
  press(QStringLiteral("Add Clock"));
  EXPECT_THAT(words(), testing::Not(HasSubstr("It comes to the marked place")));
  // “Starter Set” went, and nothing moved for it but the search's end.
  const QRect after(search->mapTo(window, QPoint()), search->size());
  EXPECT_EQ(after.topLeft(), before.topLeft());
  EXPECT_EQ(after.height(), before.height());
}

TEST_F(WindowTest, ACardsWordsStandStillUnderThePointer) {
  open();
  // The ink in what is left of the sign of the pointer; edges differ a little with the ground.
  const auto ink = [](QWidget& card) {
    const QImage image = card.grab().toImage();
    std::vector<bool> inked;
    for (int y = 0; y < image.height(); ++y)
      for (int x = 80; x < image.width() - 30; ++x)
        inked.push_back(qGray(image.pixel(x, y)) < qGray(image.pixel(80, 4)) - 60);
    return inked;
  };
  for (auto* card : shown<WidgetCard>()) {
    const auto before = ink(*card);
    card->setAttribute(Qt::WA_UnderMouse);
    const auto after = ink(*card);
    int moved = 0;
    for (std::size_t i = 0; i < before.size(); ++i)
      moved += before[i] != after[i] ? 1 : 0;
    EXPECT_LT(moved, std::ranges::count(before, true) / 5) << card->accessibleName().toStdString();
  }
}

} // namespace
} // namespace tavrin
