#include "TavrinWidgetsUI/Kit/Panels/PanelControls.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelView.h"
#include "Tests/Slot/SlotFixture.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QLineEdit>

namespace tavrin::test {
namespace {

/// What every kind's panel does when it opens.
class PanelOpening : public SlotTest, public testing::WithParamInterface<std::string> {
protected:
  void open() {
    start(*freshKind(GetParam(), platform_.fakeClock.now()), 2);
    click();
    ASSERT_NE(panel(), nullptr);
    panel()->show();
    panel()->activateWindow();
    settle();
  }
  void settle() {
    for (int round = 0; round < 3; ++round) {
      platform_.loop.runBackground();
      platform_.loop.advance(1);
      QApplication::processEvents();
    }
  }
  bool isUsable(const QWidget* widget) const {
    const auto* view = qobject_cast<const QAbstractItemView*>(widget);
    return (widget->focusPolicy() & Qt::TabFocus) != 0 && widget->isEnabled() &&
           widget->isVisibleTo(panel()) && (view == nullptr || view->model()->rowCount() > 0);
  }
  static std::string told(const QWidget* widget) {
    return std::string(widget->metaObject()->className()) + " " +
           widget->accessibleName().toStdString();
  }
};

TEST_P(PanelOpening, TheMainControlHasTheFocusAndIsSeenToHaveIt) {
  open();
  const QWidget* focus = panel()->focusWidget();
  ASSERT_NE(focus, nullptr);
  EXPECT_TRUE(isUsable(focus)) << told(focus);
  EXPECT_TRUE(panel()->testAttribute(Qt::WA_KeyboardFocusChange)) << "no ring";
  // The bottom row has it only where there is nothing else.
  const int bottomRow = panel()->height() - 44;
  const auto isAtTheBottom = [&](const QWidget* widget) {
    return widget->mapTo(panel(), QPoint()).y() >= bottomRow;
  };
  if (isAtTheBottom(focus)) {
    for (const QWidget* other : all<QWidget>()) {
      EXPECT_FALSE(isUsable(other) && !isAtTheBottom(other)) << told(other) << " comes before it";
    }
  }
  if (const auto* rows = qobject_cast<const QAbstractItemView*>(focus)) {
    EXPECT_EQ(rows->currentIndex().row(), 0) << told(focus);
  }
}

TEST_P(PanelOpening, ItIsCalledAsTheUserCallsTheWidget) {
  open();
  EXPECT_EQ(panel()->windowTitle(), "Mine");
  EXPECT_EQ(panel()->accessibleName(), "Mine");
}

TEST_P(PanelOpening, NothingJumpsWhileOneSearches) {
  open();
  auto* view = dynamic_cast<PanelView*>(panel());
  for (auto* line : all<PanelSearchField>()) {
    if (!line->isVisibleTo(panel()))
      continue;
    int height = view->fittingSize().height();
    for (const char* typed : {"c", "ca", "cat", "catx", "catxzq"}) {
      line->setText(typed);
      settle();
      EXPECT_GE(view->fittingSize().height(), height) << typed;
      height = view->fittingSize().height();
    }
    line->clear();
    settle();
  }
}

std::vector<std::string> everyKindOfPanel() {
  std::vector<std::string> keys;
  for (const auto& kind : allKinds())
    keys.emplace_back(kind.key);
  return keys;
}

INSTANTIATE_TEST_SUITE_P(EveryKind, PanelOpening, testing::ValuesIn(everyKindOfPanel()),
                         [](const auto& info) { return info.param; });

} // namespace
} // namespace tavrin::test
