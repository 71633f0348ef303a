#include "TavrinSettings/Base/FootLine.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"

#include <QTimer>
#include <gtest/gtest.h>

namespace tavrin {
namespace {

/// The line, its clock run on by hand.
class FootLineTest : public testing::Test {
protected:
  FootLineTest() { line.show(); }

  std::string words() const {
    for (const auto* child : line.findChildren<QLabel*>())
      return child->text().toStdString();
    return {};
  }
  PanelButton* undo() const {
    for (auto* child : line.findChildren<QWidget*>())
      if (auto* button = dynamic_cast<PanelButton*>(child))
        return button;
    return nullptr;
  }
  QTimer& timer() { return *line.findChild<QTimer*>(); }
  /// What was begun is over; whether anything was.
  bool pass() {
    const bool isRunning = timer().isActive();
    timer().stop();
    if (isRunning)
      QMetaObject::invokeMethod(&timer(), "timeout");
    return isRunning;
  }

  int undone = 0;
  FootLine line{[this] { ++undone; }};
};

TEST_F(FootLineTest, WhatIsSaidGoesAndAnOfferIsOfTheLastThingDone) {
  line.say("Short.", false);
  const int shortTime = timer().interval();
  line.say("A sentence that takes a good deal longer to be read to its end.", false);
  EXPECT_GT(timer().interval(), shortTime);
  EXPECT_TRUE(pass());
  EXPECT_EQ(words(), "");

  line.offerUndo("It is deleted.");
  EXPECT_TRUE(undo()->isVisible());
  EXPECT_FALSE(timer().isActive()) << "it stays until something else is done";
  undo()->click();
  EXPECT_EQ(undone, 1);
  line.withdraw();
  EXPECT_EQ(words(), "") << "undo would take back something else";
  EXPECT_FALSE(undo()->isVisible());
}

TEST_F(FootLineTest, AMereRemarkDoesNotTalkOverATrouble) {
  line.say("It did not start.", true);
  line.say("It is on the strip.", false);
  EXPECT_EQ(words(), "It did not start.");
  EXPECT_TRUE(pass());
  EXPECT_EQ(words(), "It is on the strip.");
  line.say("It broke.", true);
  EXPECT_EQ(words(), "It broke.");
}

TEST_F(FootLineTest, WhatGoesOnIsSaidUntilItEnds) {
  line.sayProgress("It restarts…");
  EXPECT_FALSE(timer().isActive());
  line.withdraw();
  EXPECT_EQ(words(), "It restarts…");
  line.say("It is there.", false);
  EXPECT_EQ(words(), "It is there.");
}

} // namespace
} // namespace tavrin
