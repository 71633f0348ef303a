#include "TavrinCore/Kinds/System/ClockSettings.h"
#include "Tests/Form/FormRig.h"

#include <QLineEdit>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tavrin::test {
namespace {

TEST(StoredValues, OneThatCannotBeIsMarkedAndNoFreshOneIs) {
  for (const auto& each : allKinds()) {
    FormRig fresh(*freshKind(each.key, {}));
    EXPECT_THAT(fresh.words().toStdString(), testing::Not(testing::HasSubstr("must be")))
        << each.key;
  }
  ClockSettings clock;
  clock.timeZoneID = "Mars/Olympus";
  FormRig rig{DockWidget::Kind(clock)};
  EXPECT_THAT(rig.words().toStdString(),
              testing::HasSubstr("“Time zone” must be a time zone such as Europe/Berlin"));
}

// As assistive technology sets it.
TEST(StoredValues, ATextThatIsSetAtOnceIsTaken) {
  FormRig rig(*freshKind("timer", {}));
  rig.control<QLineEdit>("Name")->setText("Green tea");
  EXPECT_EQ(rig.widget.name, "Green tea");
}

} // namespace
} // namespace tavrin::test
