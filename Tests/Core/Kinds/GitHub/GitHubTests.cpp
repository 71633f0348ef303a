#include "TavrinCore/Kinds/GitHub/GitHubQuery.h"

#include "TavrinCore/Base/JSONValue.h"
#include "TavrinCore/Kinds/GitHub/GitHubSettings.h"

#include <gtest/gtest.h>

namespace tavrin {
namespace {

GitHubItem item(int number, GitHubChecks checks, double updated, const char* repository = "a/b",
                bool isDraft = false) {
  return {number, "", repository, "", checks, isDraft, false, {updated}};
}

std::string numbers(const std::vector<GitHubItem>& items) {
  std::string text;
  for (const auto& each : items)
    text += std::to_string(each.number) + " ";
  return text;
}

TEST(GitHubBoardTest, SelectsAndSorts) {
  const std::vector<GitHubItem> items = {
      item(1, GitHubChecks::none, 90),    item(2, GitHubChecks::passing, 10),
      item(3, GitHubChecks::passing, 20), item(4, GitHubChecks::running, 5, "A/B", true),
      item(5, GitHubChecks::failing, 1),  item(6, GitHubChecks::failing, 2, "c/d")};
  GitHubSettings settings;
  EXPECT_EQ(numbers(GitHubBoard::select(items, settings)), "6 5 4 3 2 1 ");
  settings.repositories = {"a/B"};
  EXPECT_EQ(numbers(GitHubBoard::select(items, settings)), "5 4 3 2 1 ");
  settings.includesDrafts = false;
  settings.limit = 2;
  EXPECT_EQ(numbers(GitHubBoard::select(items, settings)), "5 3 ");
  settings.limit = -4;
  EXPECT_EQ(numbers(GitHubBoard::select(items, settings)), "5 ");
  EXPECT_EQ(GitHubBoard::worstChecks(items), GitHubChecks::failing);
  EXPECT_EQ(GitHubBoard::worstChecks({items[0], items[1]}), GitHubChecks::passing);
  EXPECT_EQ(GitHubBoard::worstChecks({}), GitHubChecks::none);
  EXPECT_EQ(GitHubBoard::failing(items), 2);
}

TEST(GitHubBoardTest, Rollups) {
  const std::pair<std::optional<std::string>, GitHubChecks> cases[] = {
      {std::nullopt, GitHubChecks::none}, {"SUCCESS", GitHubChecks::passing},
      {"FAILURE", GitHubChecks::failing}, {"ERROR", GitHubChecks::failing},
      {"PENDING", GitHubChecks::running}, {"EXPECTED", GitHubChecks::running},
      {"success", GitHubChecks::none},    {"NEWER", GitHubChecks::none}};
  for (const auto& [rollup, checks] : cases)
    EXPECT_EQ(reading(rollup), checks) << rollup.value_or("-");
}

TEST(GitHubQueryTest, Questions) {
  const std::pair<int, int> firsts[] = {{8, 16}, {30, 50}, {2, 10}, {0, 10}, {2'000'000'000, 50}};
  for (const auto& [limit, first] : firsts)
    EXPECT_EQ(GitHubQuery::first(limit), first) << limit;
  EXPECT_EQ(GitHubQuery::quoted("a \"b\" \\ \n é"), R"("a \"b\" \\ \u000a é")");

  GitHubSettings settings;
  settings.shows = GitHubShows::waitingOnYou;
  const auto arguments = GitHubQuery::arguments(settings);
  ASSERT_EQ(arguments.size(), 4U);
  EXPECT_EQ(arguments[2], "-f");
  EXPECT_TRUE(arguments[3].starts_with("query=query {\n"));
  for (
      const char* part :
      {R"(: search(query: "is:open is:pr review-requested:@me archived:false", type: ISSUE, first: 16) {)",
       R"(: search(query: "is:open is:issue assignee:@me archived:false", type: ISSUE, first: 16) {)"})
    EXPECT_NE(arguments[3].find(part), std::string::npos) << part;
  EXPECT_EQ(std::count(arguments[3].begin(), arguments[3].end(), '{'),
            std::count(arguments[3].begin(), arguments[3].end(), '}'));
  settings.shows = GitHubShows::contributions;
  EXPECT_EQ(GitHubQuery::arguments(settings)[3].substr(0, 23), "query=query { viewer { ");
}

TEST(GitHubQueryTest, AnswersAsFarAsTheyGo) {
  const std::string node =
      R"({"__typename":"PullRequest","number":7,"title":"T","url":"https://x/7","isDraft":true,)"
      R"("updatedAt":"2026-01-02T03:04:05Z","repository":{"nameWithOwner":"a/b"},)"
      R"("commits":{"nodes":[{"commit":{"statusCheckRollup":{"state":"ERROR"}}}]}})";
  const std::string issue =
      R"({"__typename":"Issue","number":8,"title":"I","url":"https://x/8",)"
      R"("updatedAt":"2026-01-02T03:04:05Z","repository":{"nameWithOwner":"a/b"}})";
  auto answer = GitHubQuery::answer(R"({"data":{"s0":{"nodes":[)" + node +
                                    R"(,null,{},5]},"s1":{"nodes":[)" + issue + "]}}}");
  ASSERT_TRUE(answer);
  ASSERT_EQ(answer->items.size(), 2U);
  EXPECT_EQ(answer->items[0].checks, GitHubChecks::failing);
  EXPECT_TRUE(answer->items[0].isDraft);
  EXPECT_TRUE(answer->items[1].isIssue);
  EXPECT_EQ(answer->items[1].checks, GitHubChecks::none);
  EXPECT_TRUE(answer->hasData && answer->error.empty());

  answer = GitHubQuery::answer(R"({"data":{"s0":null,"s1":{"nodes":[)" + issue +
                               R"(]}},"errors":[{"message":"timeout on s0"}]})");
  EXPECT_EQ(answer->items.size(), 1U);
  EXPECT_TRUE(answer->hasData);
  EXPECT_EQ(answer->error, "timeout on s0");

  answer = GitHubQuery::answer(R"({"data":null,"errors":[{"type":"RATE_LIMITED"}]})");
  EXPECT_FALSE(answer->hasData);
  EXPECT_EQ(answer->error, "GitHub answered with an error");
  EXPECT_EQ(GitHubQuery::answer(R"({"message":"Bad credentials"})")->error, "Bad credentials");
  for (const char* broken : {"", "[]", "{\"data\":", "<html>"})
    EXPECT_FALSE(GitHubQuery::answer(broken)) << broken;

  answer = GitHubQuery::answer(
      R"({"data":{"viewer":{"contributionsCollection":{"contributionCalendar":{"totalContributions":9,)"
      R"("weeks":[{"contributionDays":[{"date":"2026-01-03","contributionCount":4}]},)"
      R"({"contributionDays":[{"date":"2026-01-04","contributionCount":5}]}]}}}}})");
  ASSERT_TRUE(answer->contributions);
  EXPECT_EQ(answer->contributions->total, 9);
  EXPECT_EQ(answer->contributions->columns(9).size(), 2U) << "Saturday and Sunday";
}

GitHubContributions contributions(const std::vector<int>& counts) {
  std::vector<GitHubContributionDay> days;
  for (std::size_t i = 0; i < counts.size(); ++i) // from a Wednesday
    days.push_back({"2026-04-" + std::string(i < 9 ? "0" : "") + std::to_string(i + 1), counts[i]});
  return GitHubContributions(std::move(days), 0);
}

TEST(GitHubContributionsTest, StepsStreakBusiestAndColumns) {
  struct Case {
    std::vector<int> counts;
    std::array<int, 3> steps;
    int streak;
    int busiest;
  };
  const Case cases[] = {
      {{}, {0, 0, 0}, 0, 0},
      {{0, 0}, {0, 0, 0}, 0, 0},
      {{0, 5, 0, 0}, {5, 5, 5}, 0, 5},
      {{1, 2, 3, 4, 5}, {2, 3, 4}, 5, 5},
      {{0, 0, 9, 1, 0, 4, 1}, {1, 4, 4}, 2, 9}, // 1 1 4 9: places 0.75, 1.5 and 2.25
      {{7, 7, 0}, {7, 7, 7}, 2, 7},
      {{7, 0, 0, 7}, {7, 7, 7}, 1, 7},
  };
  for (const auto& c : cases) {
    const auto made = contributions(c.counts);
    EXPECT_EQ(made.steps, c.steps);
    EXPECT_EQ(made.streak(), c.streak);
    EXPECT_EQ(made.busiest().value_or(GitHubContributionDay{}).count, c.busiest);
  }
  const auto made = contributions({0, 1, 2, 3, 4, 5});
  EXPECT_EQ(made.level(0), 0);
  EXPECT_EQ(made.level(1), 1);
  EXPECT_EQ(made.level(2), 2);
  EXPECT_EQ(made.level(5), 4);
  const auto columns = made.columns(5);
  ASSERT_EQ(columns.size(), 2U);
  EXPECT_FALSE(columns[0][2]);
  EXPECT_EQ(columns[0][3]->date, "2026-04-01");
  EXPECT_EQ(columns[1][0]->date, "2026-04-05");
  EXPECT_EQ(made.columns(1).front(), columns[1]);
  EXPECT_TRUE(made.columns(0).empty());
  EXPECT_EQ(contributions({7, 0, 0, 7}).busiest()->date, "2026-04-04") << "the latest of equals";
}

} // namespace
} // namespace tavrin
