#include "TavrinCommand/Base/Console.h"
#include "TavrinCommand/Widgets/UsageChart.h"
#include "TavrinHost/HostError.h"
#include "Tests/Command/HostFixture.h"
#include "Tests/Support/UsageLogs.h"

namespace tavrin::test {
namespace {

namespace fs = std::filesystem;

constexpr double hour = 3600;
constexpr double day = 24 * hour;

class UsageCommandTest : public HostTest {
protected:
  UsageCommandTest() {
    platform.files.home = folder / "home";
    platform.files.support = folder / "share";
  }
  fs::path claude() const { return platform.files.home / ".claude"; }

  void log(const std::string& project, double ago, const std::string& message,
           const UsageNumbers& used) {
    UsageLogs logs(claude(), 1);
    append(logs.file("-home-u-" + project, "session"),
           logs.usageLine(platform.time.date - ago, message, "req", used));
  }
  /// Noon in Berlin is now: one message in the last five hours, one this morning, one three days
  /// ago and one before the week.
  void logFourMessages() {
    log("alpha", hour, "m1", {1000, 1990, 30'000, 400'000});
    log("alpha", hour, "m1", {1000, 2000, 30'000, 400'000}); // the same one, further on
    log("beta", 6 * hour, "m2", {1, 2, 3, 4});
    log("alpha", 3 * day, "m3", {5, 6, 7, 8});
    log("gamma", 8 * day, "m4", {1000, 0, 0, 0});
  }
  std::vector<std::vector<std::string>> rows() const {
    std::vector<std::vector<std::string>> table;
    std::istringstream text(output.str());
    for (std::string line; std::getline(text, line);) {
      std::istringstream words(line);
      table.push_back({std::istream_iterator<std::string>(words), {}});
    }
    return table;
  }
};

using Rows = std::vector<std::vector<std::string>>;

TEST_F(UsageCommandTest, PrintsPeriodsDaysAndProjects) {
  logFourMessages();
  ASSERT_EQ(run({"usage"}), 0) << errors.str();
  const Rows expected = {
      {"PERIOD", "TOKENS", "INPUT", "OUTPUT", "CACHE", "WRITES", "CACHE", "READS", "MESSAGES"},
      {"Last", "5", "hours", "433,000", "1,000", "2,000", "30,000", "400,000", "1"},
      {"Today", "433,010", "1,001", "2,002", "30,003", "400,004", "2"},
      {"Last", "7", "days", "433,036", "1,006", "2,008", "30,010", "400,012", "3"},
      {},
      {"DAY", "TOKENS", "INPUT", "OUTPUT", "CACHE", "WRITES", "CACHE", "READS", "MESSAGES"},
      {"2026-02-26", "26", "5", "6", "7", "8", "1"},
      {"2026-03-01", "433,010", "1,001", "2,002", "30,003", "400,004", "2"},
      {"All", "433,036", "1,006", "2,008", "30,010", "400,012", "3"},
      {},
      {"PROJECT", "TOKENS"},
      {"alpha", "433,026"},
      {"beta", "10"}};
  EXPECT_EQ(rows(), expected) << output.str();
}

TEST_F(UsageCommandTest, ATerminalShowsThirtyDaysAsAChart) {
  logFourMessages();
  log("delta", 20 * day, "m6", {100'000, 0, 0, 0});
  log("epsilon", 40 * day, "m7", {90'000'000, 0, 0, 0});
  columns = 80;
  ASSERT_EQ(run({"usage"}), 0) << errors.str();
  const std::string text = output.str();
  EXPECT_NE(text.find("TOKENS A DAY"), std::string::npos);
  EXPECT_NE(text.find("433k ┤"), std::string::npos) << "the greatest of the thirty days\n" << text;
  EXPECT_NE(text.find("0 ┼"), std::string::npos);
  EXPECT_NE(text.find("█"), std::string::npos);
  columns = 30;
  ASSERT_EQ(run({"usage"}), 0);
  EXPECT_EQ(output.str().find("┤"), std::string::npos) << "no room";
  columns = 0;
  ASSERT_EQ(run({"usage"}), 0);
  EXPECT_EQ(output.str().find("┤"), std::string::npos) << "no terminal";
}

TEST(UsageChart, EachDayStandsInItsColumn) {
  UsageChart chart{{0, 800, 400, 1, 0, 790}, "1 Mar", "6 Mar"};
  const auto lines = chart.lines(20);
  ASSERT_EQ(lines.size(), 7U);
  for (const auto& line : lines)
    EXPECT_LE(displayWidth(line), 20) << line;
  EXPECT_EQ(lines[0], "800 ┤  █       █ ") << "eighths are rounded";
  EXPECT_EQ(lines[2], "    │  █ ▄     █ ");
  EXPECT_EQ(lines[4], "    │  █ █ ▁   █ ") << "what was used at all is seen";
  EXPECT_EQ(lines[5], "  0 ┼────────────");
  EXPECT_EQ(chart.lines(11).front(), "800 ┤ █   █");
  EXPECT_TRUE(chart.lines(10).empty());
  EXPECT_TRUE((UsageChart{{0, 0}, "a", "b"}).lines(80).empty());
}

TEST_F(UsageCommandTest, FitsTheTerminal) {
  logFourMessages();
  log("größer-日本-" + std::string(60, 'x'), hour, "m5", {1, 1, 1, 1});
  const auto widest = [&](int terminal) {
    columns = terminal;
    EXPECT_EQ(run({"usage"}), 0) << errors.str();
    int width = 0;
    std::istringstream text(output.str());
    for (std::string line; std::getline(text, line);)
      width = std::max(width, displayWidth(line));
    return width;
  };
  const int whole = widest(0);
  const auto all = output.str();
  EXPECT_EQ(widest(whole), whole);
  EXPECT_EQ(output.str().substr(0, all.size()), all) << "the chart follows";
  EXPECT_LE(widest(whole - 1), whole - 1);
  EXPECT_EQ(rows()[1], (std::vector<std::string>{"Last", "5", "hours", "433k", "1.0k", "2.0k",
                                                 "30.0k", "400k", "2"}))
      << output.str();
  EXPECT_LE(widest(40), 40);
  EXPECT_EQ(rows()[2], (std::vector<std::string>{"Today", "433k", "3"})) << output.str();
  EXPECT_NE(output.str().find("…"), std::string::npos) << "a long project is cut";
  EXPECT_LE(widest(3), 40) << "no terminal is too narrow";
}

TEST_F(UsageCommandTest, AsJSONWithMoreDays) {
  logFourMessages();
  const auto week = json({"usage"});
  EXPECT_EQ(week.member("total")->member("tokens")->integerValue(), 433'036);
  EXPECT_EQ(week.member("days")->array()->size(), 2U);
  const auto* scopes = week.member("scopes");
  for (const auto& [scope, tokens] :
       {std::pair("block", 433'000), std::pair("today", 433'010), std::pair("week", 433'036)})
    EXPECT_EQ(scopes->member(scope)->member("tokens")->integerValue(), tokens) << scope;
  EXPECT_EQ(*scopes->member("block")->member("lastActivity")->string(), "2026-03-01T10:00:00Z");
  EXPECT_EQ(week.member("limits"), nullptr);
  EXPECT_EQ(*week.member("isConnected"), JSONValue(false));

  const auto month = json({"usage", "--days", "30"});
  EXPECT_EQ(month.member("total")->member("messages")->integerValue(), 4);
  const auto& first = month.member("days")->array()->front();
  EXPECT_EQ(*first.member("date")->string(), "2026-02-21");
  EXPECT_EQ(*first.member("projects")->array()->front().member("name")->string(), "gamma");
}

TEST_F(UsageCommandTest, TheDaysAddUpToTheSum) {
  logFourMessages();
  // Of one message lines on two days, of which the latest counts; and a clock that is ahead.
  log("alpha", 25 * hour, "m5", {100, 0, 0, 0});
  log("alpha", 2 * hour, "m5", {200, 0, 0, 0});
  log("beta", -1 * day, "m6", {7, 0, 0, 0});
  log("beta", -400 * day, "m7", {9, 0, 0, 0});
  const auto report = json({"usage"});
  std::int64_t sum = 0;
  for (const auto& each : *report.member("days")->array())
    sum += each.member("tokens")->integerValue().value();
  EXPECT_EQ(sum, report.member("total")->member("tokens")->integerValue());
  EXPECT_EQ(sum, 433'036 + 200 + 7 + 9);
  EXPECT_EQ(*report.member("days")->array()->back().member("date")->string(), "2027-04-05");
}

TEST_F(UsageCommandTest, NothingLoggedIsATableOfZeroes) {
  fs::create_directories(claude());
  ASSERT_EQ(run({"usage"}), 0) << errors.str();
  EXPECT_EQ(rows().size(), 4U) << output.str();
  EXPECT_EQ(errors.str(), "No messages were logged on these days\n");
  EXPECT_EQ(rows()[2], (std::vector<std::string>{"Today", "0", "0", "0", "0", "0", "0"}));
}

TEST_F(UsageCommandTest, ConnectsShowsLimitsAndDisconnects) {
  fs::create_directories(claude());
  ASSERT_EQ(run({"usage", "connect"}), 0) << errors.str();
  EXPECT_EQ(output.str(), "Connected. The limits show once Claude Code draws its status line.\n");
  ASSERT_EQ(run({"usage"}), 0);
  EXPECT_EQ(output.str().find("LIMIT"), std::string::npos) << "no payload yet";
  const double reset = platform.time.date.unixSeconds() + 2 * hour + 60;
  std::ofstream(folder / "share/Tavrin/claude-usage.json")
      << R"({"rate_limits":{"five_hour":{"used_percentage":41.6,"resets_at":)" << std::fixed
      << reset << R"(},"seven_day":{"utilization":7}},"subscription_type":"max"})";
  ASSERT_EQ(run({"usage"}), 0) << errors.str();
  const auto table = rows();
  const Rows limits(table.end() - 3, table.end());
  EXPECT_EQ(limits, (Rows{{"LIMIT", "USED", "RESETS", "IN"},
                          {"Five", "hours", "42%", "2h", "1m"},
                          {"Seven", "days", "7%", "-"}}));
  const auto limitsJSON = *json({"usage"}).member("limits");
  EXPECT_EQ(*limitsJSON.member("subscriptionType")->string(), "max");
  EXPECT_EQ(*limitsJSON.member("fiveHour")->member("resetsAt")->string(), "2026-03-01T13:01:00Z");
  EXPECT_EQ(limitsJSON.member("sevenDay")->compact(), R"({"usedPercentage":7})");
  EXPECT_TRUE(dateFromISO8601(*limitsJSON.member("readAt")->string()));
  // A window that has been reset meanwhile has nothing used, as on the tile.
  platform.time.date = platform.time.date + 3 * hour;
  ASSERT_EQ(run({"usage"}), 0) << errors.str();
  EXPECT_EQ(rows()[rows().size() - 2], (Rows::value_type{"Five", "hours", "0%", "-"}));
  EXPECT_EQ(
      json({"usage"}).member("limits")->member("fiveHour")->member("usedPercentage")->compact(),
      "0");
  ASSERT_EQ(run({"usage", "disconnect"}), 0) << errors.str();
  EXPECT_EQ(*json({"usage"}).member("isConnected"), JSONValue(false));
}

TEST_F(UsageCommandTest, SaysWhatIsWrong) {
  struct Case {
    std::vector<std::string> words;
    std::string sentence;
    ExitCode code = ExitCode::failed;
  };
  const auto check = [&](const Case& c) {
    EXPECT_EQ(run(c.words), static_cast<int>(c.code)) << c.sentence;
    EXPECT_NE(errors.str().find(c.sentence), std::string::npos) << errors.str();
    EXPECT_EQ(output.str(), "");
  };
  check({{"usage"}, "Claude Code has not run here"});
  check({{"usage", "connect"}, "Failed to find ~/.claude because Claude Code has not run here."});
  check({{"usage", "--days", "0"}, "--days", ExitCode::usage});
  check({{"usage", "--days", "many"}, "--days", ExitCode::usage});
  fs::create_directories(claude());
  check({{"usage", "disconnect"}, "Failed to disconnect because the status line is not Tavrin's."});
  append(claude() / "settings.json", "{,}");
  check({{"usage", "connect"},
         "Failed to read ~/.claude/settings.json because it is not valid JSON."});
}

} // namespace
} // namespace tavrin::test
