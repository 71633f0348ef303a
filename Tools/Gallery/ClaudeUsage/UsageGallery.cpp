#include "TavrinCore/Kinds/ClaudeUsage/ClaudeUsageSettings.h"
#include "TavrinCore/Kinds/GitHub/GitHubSettings.h"
#include "TavrinSettings/Samples/SampleValues.h"
#include "TavrinStorage/ClaudeUsage/ClaudeUsageBridge.h"
#include "TavrinWidgetsUI/ClaudeUsage/ClaudeUsageModel.h"
#include "TavrinWidgetsUI/ClaudeUsage/ClaudeUsagePanelView.h"
#include "TavrinWidgetsUI/ClaudeUsage/ClaudeUsageViews.h"
#include "TavrinWidgetsUI/GitHub/GitHubModel.h"
#include "TavrinWidgetsUI/GitHub/GitHubPanelView.h"
#include "Tests/Support/FakePlatform.h"
#include "Tests/Support/UsageLogs.h"
#include "Tools/Gallery/Gallery.h"

#include <deque>
#include <filesystem>
#include <fstream>

namespace tavrin {
namespace {

namespace fs = std::filesystem;

/// Wednesday, 9 September 2026, 10:08:42 in Berlin.
constexpr Date morning = Date::fromUnixSeconds(1'788'941'322);

struct UsageCase {
  const char* name;
  ClaudeUsageReading reading;
};

ClaudeUsageReading tokens(std::int64_t count, ClaudeUsageScope scope,
                          std::optional<std::int64_t> budget = {}) {
  ClaudeUsageReading reading;
  reading.hasRead = true;
  reading.settings = {ClaudeUsageShows::tokens, scope, budget};
  reading.totals.tokens = count;
  return reading;
}

ClaudeUsageReading limit(ClaudeUsageShows shows, double used, double secondsLeft) {
  auto reading = tokens(0, ClaudeUsageScope::today);
  reading.settings.shows = shows;
  reading.isConnected = true;
  const ClaudeUsageWindow window{used, morning + secondsLeft};
  reading.limits = ClaudeUsageLimits{window, window, "max", morning};
  return reading;
}

std::vector<UsageCase> usageCases() {
  using Shows = ClaudeUsageShows;
  using Scope = ClaudeUsageScope;
  auto waiting = limit(Shows::fiveHourLimit, 0, 0);
  waiting.limits.reset();
  auto notConnected = waiting;
  notConnected.isConnected = false;
  auto absent = tokens(0, Scope::today);
  absent.isAvailable = false;
  return {{"reading", {}},
          {"none", tokens(0, Scope::block)},
          {"999", tokens(999, Scope::today)},
          {"12.3k", tokens(12'345, Scope::today)},
          {"99.9k", tokens(99'949, Scope::block)},
          {"250k", tokens(250'000, Scope::week)},
          {"3.4M", tokens(3'400'000, Scope::today)},
          {"5210M", tokens(5'210'000'000, Scope::week)},
          {"100.0k", tokens(99'999, Scope::today)},
          {"budget", tokens(3'400'000, Scope::today, 5'000'000)},
          {"99.9k of", tokens(99'949, Scope::today, 250'000)},
          {"100.0k of", tokens(99'999, Scope::today, 100'000)},
          {"5210M of", tokens(5'210'000'000, Scope::week, 9'000'000'000)},
          {"over", tokens(7'400'000, Scope::today, 5'000'000)},
          {"5 h 0", limit(Shows::fiveHourLimit, 0, 17'900)},
          {"5 h 42", limit(Shows::fiveHourLimit, 42, 8000)},
          {"5 h 85", limit(Shows::fiveHourLimit, 85, 2500)},
          {"7 d 100", limit(Shows::weeklyLimit, 100, 273'600)},
          {"5 h 999", limit(Shows::fiveHourLimit, 2000, 17'900)},
          {"reset", limit(Shows::fiveHourLimit, 97, -5)},
          {"waiting", waiting},
          {"not conn.", notConnected},
          {"absent", absent}};
}

std::vector<GitHubItem> items() {
  return samples::gitHubItems(morning);
}

GitHubItem another(int number) {
  auto item = items()[3];
  item.number = number;
  item.title = "Another one";
  item.updatedAt = morning - number * 4000.0;
  return item;
}

GitHubContributions year(bool isQuiet) {
  return samples::contributions(morning, isQuiet);
}

struct GitHubCase {
  const char* name;
  GitHubReading reading;
};

std::vector<GitHubCase> gitHubCases() {
  using Kind = GitHubSource::Trouble::Kind;
  const auto reading = [](GitHubShows shows, std::vector<GitHubItem> found,
                          std::optional<GitHubSource::Trouble> trouble = {}, bool hasRead = true) {
    GitHubReading made;
    made.settings.shows = shows;
    made.items = std::move(found);
    made.trouble = std::move(trouble);
    made.hasRead = hasRead;
    if (hasRead && shows == GitHubShows::contributions)
      made.contributions = year(false);
    return made;
  };
  auto passing = items();
  passing.erase(passing.begin(), passing.begin() + 3);
  auto quiet = reading(GitHubShows::contributions, {});
  quiet.contributions = year(true);
  std::vector<GitHubItem> many;
  for (int i = 0; i < 50; ++i)
    many.push_back(another(i));
  return {{"asking", reading(GitHubShows::myPullRequests, {}, {}, false)},
          {"failing", reading(GitHubShows::myPullRequests, items())},
          {"passing", reading(GitHubShows::myPullRequests, passing)},
          {"waiting", reading(GitHubShows::waitingOnYou, {items()[4], items()[5]})},
          {"many", reading(GitHubShows::waitingOnYou, many)},
          {"nothing", reading(GitHubShows::waitingOnYou, {})},
          {"no gh", reading(GitHubShows::myPullRequests, {},
                            GitHubSource::Trouble{Kind::toolMissing, {}}, false)},
          {"signed out", reading(GitHubShows::myPullRequests, {},
                                 GitHubSource::Trouble{Kind::signedOut, {}}, false)},
          {"failed", reading(GitHubShows::myPullRequests, {},
                             GitHubSource::Trouble{Kind::failed, "gh timed out"}, false)},
          {"year", reading(GitHubShows::contributions, {})},
          {"quiet", quiet}};
}

GallerySheet sheetOf(std::initializer_list<int> spans) {
  GallerySheet sheet;
  for (const int span : spans) {
    for (const auto& usage : usageCases())
      sheet.push_back({usage.name, span, [usage](const TileSize& size) {
                         return size.isWide() ? claudeUsageWideTile(usage.reading, morning, size)
                                              : claudeUsageTileIcon(usage.reading, morning, size);
                       }});
    for (const auto& github : gitHubCases())
      sheet.push_back({github.name, span, [github](const TileSize& size) {
                         return size.isWide() ? gitHubWideTile(github.reading, morning, size,
                                                               [](const auto&) {})
                                              : gitHubTileIcon(github.reading, size);
                       }});
  }
  return sheet;
}

/// A home with logs, limits and a desktop around it, for as long as the gallery runs.
struct UsageStand {
  UsageStand(ClaudeUsageSettings settings, bool hasClaude, bool isConnected, bool hasPayload)
      : platform(morning),
        home(fs::temp_directory_path() / ("tavrin-gallery-" + UUID::random().text())) {
    platform.files.home = home;
    platform.files.support = home / "support";
    if (hasClaude)
      writeLogs();
    if (isConnected)
      ClaudeUsageBridge(platform.files).connect();
    if (hasPayload)
      std::ofstream(ClaudeUsageBridge(platform.files).payloadURL())
          << R"({"rate_limits":{"five_hour":{"used_percentage":41.6,"resets_at":1788950000},)"
             R"("seven_day":{"used_percentage":88,"resets_at":1789200000}},"subscription_type":"max"})";
    model = std::make_unique<ClaudeUsageModel>(platform.fakeClock, platform.loop, platform.files,
                                               DockWidget({}, "Claude Usage", 1, settings, 1));
    platform.loop.runBackground();
    model->readDays();
    platform.loop.runBackground();
  }
  ~UsageStand() {
    std::error_code ignored;
    fs::remove_all(home, ignored);
  }
  void writeLogs() const {
    test::UsageLogs logs(home / ".claude", 5);
    const char* folders[] = {"-home-ann-tavrin", "-home-ann-work-a-very-long-project-name-of-it",
                             "-home-ann-notes",  "-srv-build",
                             "-home-ann-dots",   "-home-ann-six"};
    for (int i = 0; i < 6; ++i) {
      Date time = morning - 3600.0 * (6 - i);
      test::append(logs.file(folders[i], "a"), logs.session(time, 60 / (i + 1)));
    }
    for (int day = 1; day < 30; ++day) {
      Date time = morning - 86'400.0 * day;
      if (day % 7 > 1)
        test::append(logs.file(folders[0], "days"), logs.session(time, 5 + day * 7 % 40));
    }
  }

  test::FakePlatform platform;
  fs::path home;
  std::unique_ptr<ClaudeUsageModel> model;
};

GalleryPanel usagePanel(const char* name, ClaudeUsageSettings settings, bool hasClaude,
                        bool isConnected, bool hasPayload) {
  return {name, claudeUsageTint, [=](const PanelAppearance& look) {
            static std::deque<UsageStand> stands;
            auto& stand = stands.emplace_back(settings, hasClaude, isConnected, hasPayload);
            return new ClaudeUsagePanelView(
                look, *stand.model, [](auto) {}, [] {});
          }};
}

/// A desktop on which gh answers as told.
struct GitHubStand {
  GitHubStand(GitHubShows shows, const ProcessResult& result, bool hasTool, bool answers)
      : platform(morning) {
    platform.fakeProcesses.result = result;
    if (hasTool)
      platform.defaults.values[GitHubSource::pathDefault] = "/bin/sh";
    GitHubSettings settings;
    settings.shows = shows;
    model = std::make_unique<GitHubModel>(
        platform.fakeClock, platform.loop, platform.fakeWorkspace,
        GitHubSource(platform.loop, platform.fakeProcesses, platform.files, platform.defaults),
        DockWidget({}, "GitHub", 1, settings, 1));
    if (!answers)
      return;
    platform.loop.runPosts();
    platform.loop.runBackground();
  }
  test::FakePlatform platform;
  std::unique_ptr<GitHubModel> model;
};

std::string answerWith(const std::vector<GitHubItem>& found) {
  JSONValue::Array nodes;
  for (const auto& each : found) {
    JSONValue::Object node{{"__typename", each.isIssue ? "Issue" : "PullRequest"},
                           {"number", each.number},
                           {"title", each.title},
                           {"url", each.url},
                           {"isDraft", each.isDraft},
                           {"updatedAt", iso8601(each.updatedAt)},
                           {"repository", JSONValue::Object{{"nameWithOwner", each.repository}}}};
    const char* states[] = {"FAILURE", "PENDING", "SUCCESS", ""};
    const JSONValue rollup =
        JSONValue::Object{{"state", states[static_cast<std::size_t>(each.checks)]}};
    node.emplace(
        "commits",
        JSONValue::Object{
            {"nodes", JSONValue::Array{JSONValue::Object{
                          {"commit", JSONValue::Object{{"statusCheckRollup", rollup}}}}}}});
    nodes.emplace_back(std::move(node));
  }
  return JSONValue(JSONValue::Object{
                       {"data", JSONValue::Object{{"s0", JSONValue::Object{{"nodes", nodes}}}}}})
      .compact();
}

std::string answerWith(const GitHubContributions& contributions) {
  JSONValue::Array days;
  for (const auto& day : contributions.days)
    days.emplace_back(JSONValue::Object{{"date", day.date}, {"contributionCount", day.count}});
  const JSONValue calendar = JSONValue::Object{
      {"totalContributions", contributions.total},
      {"weeks", JSONValue::Array{JSONValue::Object{{"contributionDays", std::move(days)}}}}};
  return R"({"data":{"viewer":{"contributionsCollection":{"contributionCalendar":)" +
         calendar.compact() + "}}}}";
}

GalleryPanel gitHubPanel(const char* name, GitHubShows shows, const ProcessResult& result,
                         bool hasTool = true, bool answers = true) {
  return {name, gitHubTint, [=](const PanelAppearance& look) {
            static std::deque<GitHubStand> stands;
            auto& stand = stands.emplace_back(shows, result, hasTool, answers);
            return new GitHubPanelView(
                look, *stand.model, [](const auto&) {}, [] {});
          }};
}

} // namespace

GallerySheet usageGallery() {
  return sheetOf({1});
}
GallerySheet usageWideGallery() {
  return sheetOf({2, 4});
}

GalleryPanels usagePanels() {
  using Outcome = ProcessResult::Outcome;
  const ClaudeUsageSettings today;
  const ClaudeUsageSettings budget{ClaudeUsageShows::tokens, ClaudeUsageScope::week, 20'000'000};
  auto many = items();
  for (int i = 0; i < 12; ++i)
    many.push_back(another(i));
  return {
      usagePanel("plain", today, true, false, false),
      usagePanel("limits", budget, true, true, true),
      usagePanel("limits, no budget", today, true, true, true),
      usagePanel("waiting", today, true, true, false),
      usagePanel("absent", today, false, false, false),
      gitHubPanel("list", GitHubShows::myPullRequests,
                  {Outcome::exited, 0, answerWith(items()), "", false}),
      gitHubPanel("many", GitHubShows::myPullRequests,
                  {Outcome::exited, 0, answerWith(many), "", false}),
      gitHubPanel("asking", GitHubShows::myPullRequests, {}, true, false),
      gitHubPanel("part", GitHubShows::waitingOnYou,
                  {Outcome::exited, 1, answerWith({items()[4]}),
                   "gh: API rate limit exceeded for user ID 1.", false}),
      gitHubPanel("nothing", GitHubShows::waitingOnYou,
                  {Outcome::exited, 0, answerWith(std::vector<GitHubItem>{}), "", false}),
      gitHubPanel("no gh", GitHubShows::myPullRequests, {}, false),
      gitHubPanel("signed out", GitHubShows::myPullRequests,
                  {Outcome::exited, 4, "", "To get started, run: gh auth login", false}),
      gitHubPanel("hang", GitHubShows::myPullRequests, {Outcome::timedOut, 15, "", "", false}),
      gitHubPanel("long error", GitHubShows::myPullRequests,
                  {Outcome::exited, 1, "",
                   "Post \"https://api.github.com/graphql\": dial tcp: lookup api.github.com on "
                   "127.0.0.53:53: read udp 127.0.0.1:51234->127.0.0.53:53: i/o timeout, and then "
                   "some more words that nobody wanted to read in a panel of this size, but that "
                   "are there all the same because a tool may say whatever it likes at any length",
                   false}),
      gitHubPanel("year, in part", GitHubShows::contributions,
                  {Outcome::exited, 1, answerWith(year(false)), "gh: something went wrong", false}),
      gitHubPanel("year", GitHubShows::contributions,
                  {Outcome::exited, 0, answerWith(year(false)), "", false}),
      gitHubPanel("quiet", GitHubShows::contributions,
                  {Outcome::exited, 0, answerWith(year(true)), "", false}),
  };
}

} // namespace tavrin
