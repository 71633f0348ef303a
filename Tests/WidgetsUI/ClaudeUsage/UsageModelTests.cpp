#include "TavrinCore/Kinds/ClaudeUsage/ClaudeUsageSettings.h"
#include "TavrinStorage/ClaudeUsage/ClaudeUsageBridge.h"
#include "TavrinWidgetsUI/ClaudeUsage/ClaudeUsageModel.h"
#include "TavrinWidgetsUI/ClaudeUsage/ClaudeUsagePanelView.h"
#include "TavrinWidgetsUI/ClaudeUsage/ClaudeUsageViews.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Views/ViewWidget.h"
#include "Tests/Kit/PanelTestSupport.h"
#include "Tests/Storage/TemporaryFolder.h"
#include "Tests/Support/FakePlatform.h"
#include "Tests/Support/UsageLogs.h"

#include <QLabel>
#include <ctime>
#include <fmt/format.h>
#include <gtest/gtest.h>

namespace tavrin::test {
namespace {

namespace fs = std::filesystem;

/// Files are stamped by the real clock, so these tests play now.
class ClaudeUsageModelTest : public testing::Test {
protected:
  ClaudeUsageModelTest() : platform(Date::fromUnixSeconds(double(std::time(nullptr)))) {
    platform.files.home = folder.path();
    platform.files.support = folder / "support";
  }
  std::unique_ptr<ClaudeUsageModel> makeModel(const ClaudeUsageSettings& settings = {}) {
    auto model = std::make_unique<ClaudeUsageModel>(
        platform.fakeClock, platform.loop, platform.files, DockWidget({}, "U", 1, settings, 1));
    model->onChange = [this] { ++changes; };
    return model;
  }
  void log(const std::string& message, int tokens, const std::string& project = "app") {
    UsageLogs logs(folder / ".claude", 1);
    append(logs.file("-home-ann-" + project, "a"),
           logs.usageLine(platform.fakeClock.now() - 60, message, "r", {tokens, 0, 0, 0}));
  }

  TemporaryFolder folder;
  FakePlatform platform;
  int changes = 0;
};

TEST_F(ClaudeUsageModelTest, ReadsAtOnceAndOnceAMinuteAndTellsOnlyWhatDiffers) {
  log("m1", 10);
  const auto model = makeModel();
  EXPECT_FALSE(model->hasRead());
  platform.loop.runBackground();
  EXPECT_TRUE(model->hasRead() && model->isAvailable());
  EXPECT_EQ(model->byScope().at(ClaudeUsageScope::block).tokens, 10);
  EXPECT_EQ(changes, 1);
  platform.loop.advance(60);
  platform.loop.runBackground();
  EXPECT_EQ(changes, 1) << "nothing new";
  log("m2", 5);
  platform.loop.advance(59);
  EXPECT_EQ(platform.loop.waitingBackground(), 0U);
  platform.loop.advance(1);
  model->refresh();
  EXPECT_EQ(platform.loop.waitingBackground(), 1U) << "one reading at a time";
  platform.loop.runBackground();
  EXPECT_EQ(model->byScope().at(ClaudeUsageScope::week).tokens, 15);
  EXPECT_EQ(changes, 2);
}

TEST_F(ClaudeUsageModelTest, TheTimeLeftOfALimitMoves) {
  fs::create_directory(folder / ".claude");
  const ClaudeUsageBridge bridge(platform.files);
  bridge.connect();
  put(bridge.payloadURL(),
      R"({"rate_limits":{"five_hour":{"used_percentage":40,"resets_at":)" +
          std::to_string(static_cast<long>(platform.fakeClock.now().unixSeconds()) + 90) + "}}}");
  const auto model = makeModel();
  platform.loop.runBackground();
  ASSERT_TRUE(model->isConnected() && model->limits());
  EXPECT_DOUBLE_EQ(usedFraction(*model->limits()->fiveHour, model->now()), 0.4);
  changes = 0;
  platform.loop.advance(60);
  platform.loop.runBackground();
  EXPECT_EQ(changes, 0) << "1m before and now";
  platform.loop.advance(60);
  platform.loop.runBackground();
  EXPECT_EQ(changes, 1) << "it was reset";
  EXPECT_DOUBLE_EQ(usedFraction(*model->limits()->fiveHour, model->now()), 0);
}

TEST_F(ClaudeUsageModelTest, LimitsAreTurnedOnAndOffAndFailuresAreToldOnce) {
  fs::create_directory(folder / ".claude");
  const auto model = makeModel();
  model->setConnected(true); // the first reading is under way
  EXPECT_EQ(platform.loop.waitingBackground(), 1U);
  platform.loop.runBackground();
  platform.loop.runBackground();
  EXPECT_TRUE(model->isConnected());
  EXPECT_EQ(model->bridgeError(), "");
  model->setConnected(false);
  platform.loop.runBackground();
  EXPECT_FALSE(model->isConnected());
  put(folder / ".claude/settings.json", "{");
  changes = 0;
  model->setConnected(true);
  platform.loop.runBackground();
  EXPECT_EQ(model->bridgeError(),
            "Failed to read ~/.claude/settings.json because it is not valid JSON.");
  EXPECT_EQ(changes, 1);
  model->refresh();
  platform.loop.runBackground();
  EXPECT_EQ(model->bridgeError(), "");
}

struct ClaudeUsagePanelTest : ClaudeUsageModelTest {
  /// All the words that can be seen.
  static QString words(const QWidget& panel) {
    QString words;
    for (const auto* label : panel.findChildren<QLabel*>())
      if (label->isVisible())
        words += label->text() + "\n";
    return words;
  }
  static PanelButton* button(const QWidget& panel, const QString& title) {
    for (auto* found : panel.findChildren<PanelButton*>())
      if (found->isVisible() && spokenName(found) == title)
        return found;
    return nullptr;
  }
};

TEST_F(ClaudeUsagePanelTest, ShowsWholeProjectsOnlyAndAsManyAsThereIsRoomFor) {
  for (int i = 0; i < 7; ++i)
    log(fmt::format("m{}", i), 1000 - i, fmt::format("project{}", i));
  const auto shownProjects = [&](const ClaudeUsageSettings& settings) {
    const auto model = makeModel(settings);
    platform.loop.runBackground();
    auto* panel = new ClaudeUsagePanelView(
        {}, *model, [](auto) {}, [] {});
    PanelStage stage(panel);
    panel->grab(); // names are told once they are painted
    EXPECT_LE(panel->height(), 560);
    qsizetype projects = 0;
    for (auto* widget : panel->findChildren<QWidget*>()) {
      const auto* rows = dynamic_cast<ViewWidget*>(widget);
      if (rows == nullptr || !rows->isVisible())
        continue;
      const auto count = rows->accessibleName().count("project");
      EXPECT_GE(rows->height(), count > 0 ? count * 20 : rows->sizeHint().height());
      projects += count;
    }
    return projects;
  };
  const ClaudeUsageSettings budget{ClaudeUsageShows::tokens, ClaudeUsageScope::week, 1000};
  EXPECT_EQ(shownProjects({}), 5);
  const ClaudeUsageBridge bridge(platform.files);
  bridge.connect();
  put(bridge.payloadURL(), R"({"rate_limits":{"five_hour":{"used_percentage":40},)"
                           R"("seven_day":{"used_percentage":40}}})");
  EXPECT_EQ(shownProjects({}), 5);
  const auto crowded = shownProjects(budget);
  EXPECT_TRUE(crowded >= 2 && crowded < 5) << crowded;
}

TEST_F(ClaudeUsagePanelTest, TurnsLimitsOnAndSaysWhatWentWrong) {
  log("m", 1);
  const auto model = makeModel();
  platform.loop.runBackground();
  auto* panel = new ClaudeUsagePanelView(
      {}, *model, [](auto) {}, [] {});
  PanelStage stage(panel);
  const auto click = [&](const char* title) {
    auto* found = button(*panel, title);
    ASSERT_NE(found, nullptr) << title;
    stage.click(found);
    platform.loop.runBackground();
    panel->refresh();
    QApplication::processEvents();
  };
  EXPECT_TRUE(words(*panel).contains("Turn that on in this widget's settings."));
  put(folder / ".claude/settings.json", "{");
  click("Turn On Limits");
  EXPECT_TRUE(words(*panel).contains("because it is not valid JSON.")) << qPrintable(words(*panel));
  put(folder / ".claude/settings.json", "{}");
  click("Turn On Limits");
  EXPECT_TRUE(words(*panel).contains("Waiting for Claude Code"));
  click("Turn Off Limits");
  EXPECT_FALSE(model->isConnected());
}

TEST_F(ClaudeUsageModelTest, AModelThatGoesGetsNoAnswer) {
  auto model = makeModel();
  model.reset();
  platform.loop.runBackground();
  EXPECT_EQ(changes, 0);
  const auto other = makeModel();
  platform.loop.runBackground();
  EXPECT_FALSE(other->isAvailable()) << "Claude Code has no folder here";
}

} // namespace
} // namespace tavrin::test
