#include "TavrinCore/Kinds/ClaudeUsage/ClaudeUsageSettings.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelSegments.h"
#include "Tests/Slot/SlotFixture.h"
#include "Tests/Storage/TemporaryFolder.h"
#include "Tests/Support/UsageLogs.h"

namespace tavrin::test {
namespace {

class UsageWidgetTest : public SlotTest {
protected:
  void open(const DockWidget::Kind& kind) {
    platform_.files.home = folder_;
    start(kind);
    settle();
    click();
    settle();
  }
};

TEST_F(UsageWidgetTest, ThePeriodChosenInThePanelIsSaved) {
  std::filesystem::create_directories(folder_ / ".claude/projects");
  open(ClaudeUsageSettings{});
  auto* periods = first<PanelSegments>();
  ASSERT_NE(periods, nullptr);
  periods->onChange(static_cast<int>(ClaudeUsageScope::week));
  const auto saved = decode<WidgetsFile>(*readJSONFile(folder_ / "widgets.json"));
  EXPECT_EQ(saved.widgets[0].kind.get<ClaudeUsageSettings>()->scope, ClaudeUsageScope::week);
  EXPECT_EQ(platform_.center.count("dev.quellby.tavrin.widgetsChanged"), 1);
}

TEST_F(UsageWidgetTest, ThePanelChartsThirtyDaysAndTellsThem) {
  UsageLogs logs(folder_ / ".claude", 1);
  const auto used = [&](double daysAgo, const char* message, std::int64_t tokens) {
    append(logs.file("-home-u-app", "session"),
           logs.usageLine(platform_.fakeClock.now() - daysAgo * 86'400, message, "r",
                          {static_cast<int>(tokens), 0, 0, 0}));
  };
  used(40, "m0", 90'000);
  used(20, "m1", 5000);
  used(0, "m2", 1500);
  open(ClaudeUsageSettings{});
  ASSERT_NE(first<PanelSegments>(), nullptr);
  platform_.loop.runBackground();
  QString told;
  for (auto* child : panel()->findChildren<QWidget*>())
    if (child->accessibleName() == "Tokens of each of the last thirty days")
      told = child->accessibleDescription();
  EXPECT_TRUE(told.startsWith("6.5k tokens in all, at most 5.0k, on ")) << told.toStdString();
  EXPECT_TRUE(told.endsWith(", and 1.5k today.")) << told.toStdString();
}

} // namespace
} // namespace tavrin::test
