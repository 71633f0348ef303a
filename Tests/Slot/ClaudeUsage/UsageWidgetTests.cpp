#include "TavrinCore/Kinds/ClaudeUsage/ClaudeUsageSettings.h"
#include "TavrinCore/Kinds/GitHub/GitHubSettings.h"
#include "TavrinSlot/SlotApp.h"

#include "TavrinPlatform/Files/AtomicFile.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelList.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelSegments.h"
#include "Tests/Storage/TemporaryFolder.h"
#include "Tests/Support/FakePlatform.h"
#include "Tests/Support/UsageLogs.h"

#include <gtest/gtest.h>

namespace tavrin::test {
namespace {

/// A slot with one widget on a data folder of its own.
class UsageWidgetTest : public testing::Test {
protected:
  void start(const DockWidget::Kind& kind) {
    platform.files.variables["TAVRIN_APP_SUPPORT_DIR"] = folder.path().string();
    platform.files.home = folder.path();
    platform.bundle.integers["TavrinSlot"] = 1;
    platform.fakeApplication.args = {"TavrinSlot", "--background"};
    writeJSONFile(file(), encode(WidgetsFile{1, {{UUID::random(), "W", 1, kind, 1}}, {}}));
    app = std::make_unique<SlotApp>(platform);
    app->applicationDidFinishLaunching();
    platform.loop.runPosts();
    platform.loop.runBackground();
  }
  std::filesystem::path file() const { return folder / "widgets.json"; }
  template <class Child> Child* inPanel() {
    app->applicationShouldHandleReopen(false);
    platform.loop.runPosts();
    platform.loop.runBackground();
    for (auto* child : platform.fakePopover.content()->findChildren<QWidget*>())
      if (auto* found = dynamic_cast<Child*>(child))
        return found;
    return static_cast<Child*>(nullptr);
  }

  TemporaryFolder folder;
  FakePlatform platform;
  std::unique_ptr<SlotApp> app;
};

TEST_F(UsageWidgetTest, ARowOpensInTheBrowserAndNothingElseDoes) {
  platform.defaults.values["GitHubCLIPath"] = "/bin/sh";
  const auto node = [](const char* url, const char* time) {
    return std::string(R"({"number":1,"title":"T","updatedAt":")") + time + R"(","url":")" + url +
           R"(","repository":{"nameWithOwner":"a/b"}})";
  };
  platform.fakeProcesses.result = {
      ProcessResult::Outcome::exited, 0,
      R"({"data":{"s0":{"nodes":[)" + node("https://github.com/a/b/1", "2026-01-02T00:00:00Z") +
          "," + node("file:///etc/passwd", "2026-01-01T00:00:00Z") + "]}}}",
      "", false};
  start(GitHubSettings{});
  auto* list = inPanel<PanelList>();
  ASSERT_NE(list, nullptr);
  ASSERT_EQ(list->count(), 2);
  list->onOpen(1);
  EXPECT_TRUE(platform.fakeWorkspace.opened.empty());
  platform.fakePopover.shown = true;
  list->onOpen(0);
  EXPECT_EQ(platform.fakeWorkspace.opened, std::vector<std::string>{"https://github.com/a/b/1"});
  EXPECT_FALSE(platform.fakePopover.shown);
  EXPECT_EQ(platform.tile.name, "GitHub");
}

TEST_F(UsageWidgetTest, ThePeriodChosenInThePanelIsSaved) {
  std::filesystem::create_directories(folder / ".claude/projects");
  start(ClaudeUsageSettings{});
  auto* periods = inPanel<PanelSegments>();
  ASSERT_NE(periods, nullptr);
  periods->onChange(static_cast<int>(ClaudeUsageScope::week));
  const auto saved = decode<WidgetsFile>(*readJSONFile(file()));
  EXPECT_EQ(saved.widgets[0].kind.get<ClaudeUsageSettings>()->scope, ClaudeUsageScope::week);
  EXPECT_EQ(platform.center.count("dev.quellby.tavrin.widgetsChanged"), 1);
}

TEST_F(UsageWidgetTest, ThePanelChartsThirtyDaysAndTellsThem) {
  UsageLogs logs(folder / ".claude", 1);
  const auto used = [&](double daysAgo, const char* message, std::int64_t tokens) {
    append(logs.file("-home-u-app", "session"),
           logs.usageLine(platform.fakeClock.now() - daysAgo * 86'400, message, "r",
                          {static_cast<int>(tokens), 0, 0, 0}));
  };
  used(40, "m0", 90'000);
  used(20, "m1", 5000);
  used(0, "m2", 1500);
  start(ClaudeUsageSettings{});
  ASSERT_NE(inPanel<PanelSegments>(), nullptr);
  platform.loop.runBackground();
  QString told;
  for (auto* child : platform.fakePopover.content()->findChildren<QWidget*>())
    if (child->accessibleName() == "Tokens of each of the last thirty days")
      told = child->accessibleDescription();
  EXPECT_TRUE(told.startsWith("6.5k tokens in all, at most 5.0k, on ")) << told.toStdString();
  EXPECT_TRUE(told.endsWith(", and 1.5k today.")) << told.toStdString();
}

} // namespace
} // namespace tavrin::test
