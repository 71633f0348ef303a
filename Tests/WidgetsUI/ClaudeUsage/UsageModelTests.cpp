#include "TavrinCore/Kinds/ClaudeUsage/ClaudeUsageSettings.h"
#include "TavrinCore/Kinds/GitHub/GitHubSettings.h"
#include "TavrinStorage/ClaudeUsage/ClaudeUsageBridge.h"
#include "TavrinWidgetsUI/ClaudeUsage/ClaudeUsageModel.h"
#include "TavrinWidgetsUI/ClaudeUsage/ClaudeUsagePanelView.h"
#include "TavrinWidgetsUI/ClaudeUsage/ClaudeUsageViews.h"
#include "TavrinWidgetsUI/GitHub/GitHubModel.h"
#include "TavrinWidgetsUI/GitHub/GitHubViews.h"
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

class GitHubModelTest : public testing::Test {
protected:
  GitHubModelTest() {
    platform.defaults.values["GitHubCLIPath"] = "/bin/sh";
    answer(R"({"data":{"s0":{"nodes":[{"number":1,"title":"T","url":"https://x/1",)"
           R"("updatedAt":"2026-01-02T03:04:05Z","repository":{"nameWithOwner":"a/b"}}]}}})");
    model = std::make_unique<GitHubModel>(
        platform.fakeClock, platform.loop, platform.fakeWorkspace,
        GitHubSource(platform.loop, platform.fakeProcesses, platform.files, platform.defaults),
        widget({}));
    settle();
  }
  static DockWidget widget(const GitHubSettings& settings) { return {{}, "G", 1, settings, 1}; }
  void answer(const std::string& text, const std::string& error = {}) {
    platform.fakeProcesses.result = {ProcessResult::Outcome::exited, error.empty() ? 0 : 1, text,
                                     error, false};
  }
  void settle() {
    platform.loop.runPosts();
    platform.loop.runBackground();
  }
  std::size_t asked() const { return platform.fakeProcesses.requests.size(); }

  FakePlatform platform;
  std::unique_ptr<GitHubModel> model;
};

TEST_F(GitHubModelTest, AsksEveryTwoMinutesAndSeldomerWhenSavingEnergy) {
  EXPECT_EQ(asked(), 1U);
  EXPECT_EQ(model->items().size(), 1U);
  EXPECT_FALSE(model->isLoading());
  platform.loop.advance(119);
  EXPECT_EQ(asked(), 1U);
  platform.loop.advance(1);
  EXPECT_TRUE(model->isLoading());
  model->refresh();
  EXPECT_EQ(asked(), 2U) << "one question at a time";
  settle();
  platform.fakeWorkspace.lowPower = true;
  platform.fakeWorkspace.lowPowerChange.call();
  platform.loop.advance(299);
  EXPECT_EQ(asked(), 2U);
  platform.loop.advance(1);
  EXPECT_EQ(asked(), 3U);
  settle();
  platform.fakeWorkspace.wake.call();
  EXPECT_EQ(asked(), 4U);
}

TEST_F(GitHubModelTest, KeepsWhatItHasWhileGitHubCannotBeReached) {
  answer("", "no network");
  model->refresh();
  settle();
  EXPECT_EQ(model->items().size(), 1U);
  EXPECT_EQ(model->trouble()->text, "no network");
  answer("", "run gh auth login");
  model->refresh();
  settle();
  EXPECT_TRUE(model->items().empty());
  EXPECT_EQ(model->trouble()->kind, GitHubSource::Trouble::Kind::signedOut);
  EXPECT_FALSE(model->hasRead());
}

TEST_F(GitHubModelTest, OtherSettingsAreAskedForAtOnce) {
  GitHubSettings settings;
  model->setWidget(widget(settings));
  EXPECT_EQ(asked(), 1U) << "the same";
  settings.shows = GitHubShows::contributions;
  model->setWidget(widget(settings));
  EXPECT_EQ(asked(), 2U);
  EXPECT_FALSE(model->hasRead());
  EXPECT_NE(platform.fakeProcesses.requests.back().arguments.back().find("contributionCalendar"),
            std::string::npos);
  settings.shows = GitHubShows::waitingOnYou;
  model->setWidget(widget(settings));
  EXPECT_EQ(asked(), 3U) << "without waiting for the other answer";
}

TEST(GitHubTextTest, Texts) {
  EXPECT_EQ(failingText(3), "3 failing ");
  EXPECT_EQ(itemText({412, "", "a/b", "", GitHubChecks::failing, false, false, {}}),
            "Failing · a/b #412");
  EXPECT_EQ(itemText({4, "", "a/b", "", GitHubChecks::none, false, true, {}}), "Issue · a/b #4");
  const std::pair<double, const char*> ages[] = {{-9, "now"},   {59, "now"},  {60, "1m"},
                                                 {3599, "59m"}, {3600, "1h"}, {86'400 * 12, "12d"}};
  for (const auto& [seconds, text] : ages)
    EXPECT_EQ(agoText({0}, {seconds}), text);
}

} // namespace
} // namespace tavrin::test
