#include "TavrinCore/Base/ISO8601.h"
#include "TavrinCore/Kinds/GitHub/GitHubSettings.h"
#include "TavrinSettings/Samples/SampleValues.h"
#include "TavrinWidgetsUI/GitHub/GitHubModel.h"
#include "TavrinWidgetsUI/GitHub/GitHubPanelView.h"
#include "TavrinWidgetsUI/GitHub/GitHubViews.h"
#include "Tests/Support/FakePlatform.h"
#include "Tools/Gallery/Gallery.h"

#include <deque>

namespace tavrin {
namespace {

/// Wednesday, 9 September 2026, 10:08:42 in Berlin.
constexpr Date morning = Date::fromUnixSeconds(1'788'941'322);

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

GallerySheet gitHubGallery() {
  GallerySheet sheet;
  for (const int span : {1, 2, 4})
    for (const auto& github : gitHubCases())
      sheet.push_back({github.name, span, [github](const TileSize& size) {
                         return size.isWide() ? gitHubWideTile(github.reading, morning, size,
                                                               [](const auto&) {})
                                              : gitHubTileIcon(github.reading, size);
                       }});
  return sheet;
}

GalleryPanels gitHubPanels() {
  using Outcome = ProcessResult::Outcome;
  auto many = items();
  for (int i = 0; i < 12; ++i)
    many.push_back(another(i));
  return {
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

const GalleryEntry gitHubEntries[] = {{"github", gitHubGallery}, {"github-panels", gitHubPanels}};

} // namespace tavrin
