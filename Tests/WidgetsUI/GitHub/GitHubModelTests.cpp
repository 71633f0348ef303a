#include "TavrinCore/Kinds/GitHub/GitHubSettings.h"
#include "TavrinWidgetsUI/GitHub/GitHubModel.h"
#include "TavrinWidgetsUI/GitHub/GitHubViews.h"
#include "Tests/Support/FakePlatform.h"

#include <gtest/gtest.h>

namespace tavrin::test {
namespace {

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
