#include "TavrinCore/Kinds/ClaudeUsage/ClaudeUsageSettings.h"
#include "TavrinStorage/ClaudeUsage/ClaudeUsageSource.h"

#include "TavrinCore/Kinds/ClaudeUsage/ClaudeUsage.h"
#include "Tests/Storage/TemporaryFolder.h"
#include "Tests/Support/UsageLogs.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <fcntl.h>
#include <fmt/format.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace tavrin {
namespace {

namespace fs = std::filesystem;
using test::append;
using test::UsageLogs;

Date date(const char* text) {
  return dateFromISO8601(text).value();
}

std::string described(const ClaudeUsageTotals& totals) {
  std::string text =
      fmt::format("{} {} {} {} in {}, last {:.3f}:", totals.inputTokens, totals.outputTokens,
                  totals.cacheCreationTokens, totals.cacheReadTokens, totals.messages,
                  totals.lastActivity ? totals.lastActivity->unixSeconds() : -1);
  for (const auto& project : totals.projects)
    text += fmt::format(" {}={}", project.name, project.tokens);
  return text;
}

/// What the script beside this file finds.
std::map<ClaudeUsageScope, std::string> referenceTotals(const fs::path& root, Date now,
                                                        const std::string& zone) {
  const auto command = fmt::format("/usr/bin/python3 '{}' '{}' {:.6f} {}",
                                   TAVRIN_TESTS_FOLDER "/Storage/usage_reference.py", root.string(),
                                   now.unixSeconds(), zone);
  std::string output;
  FILE* pipe = ::popen(command.c_str(), "r");
  std::array<char, 4096> buffer{};
  while (const auto count = std::fread(buffer.data(), 1, buffer.size(), pipe))
    output.append(buffer.data(), count);
  EXPECT_EQ(::pclose(pipe), 0);
  const auto document = JSONValue::parse(output);
  std::map<ClaudeUsageScope, std::string> byScope;
  for (const auto scope : allCases<ClaudeUsageScope>()) {
    const auto& found = *document.member(nameOf(scope));
    const auto sums = decodeMember<std::vector<std::int64_t>>(found, "sums");
    const auto last = decodeMember<std::optional<double>>(found, "last");
    ClaudeUsageTotals totals;
    totals.inputTokens = sums[0];
    totals.outputTokens = sums[1];
    totals.cacheCreationTokens = sums[2];
    totals.cacheReadTokens = sums[3];
    totals.messages = decodeMember<std::int64_t>(found, "messages");
    if (last)
      totals.lastActivity = Date::fromUnixSeconds(*last);
    for (const auto& project : *found.member("projects")->array())
      totals.projects.push_back(
          {*project.array()->at(0).string(), project.array()->at(1).integerValue().value()});
    byScope[scope] = described(totals);
  }
  return byScope;
}

class ClaudeUsageSourceTest : public testing::Test {
protected:
  ClaudeUsageSourceTest() { fs::create_directories(root / "projects"); }

  /// All files look as if written at `date`, for tests that play in the past.
  void touchAll(Date date) {
    for (const auto& entry : fs::recursive_directory_iterator(root))
      if (entry.is_regular_file()) {
        const timespec time{static_cast<time_t>(date.unixSeconds()), 0};
        const timespec times[] = {time, time};
        ::utimensat(AT_FDCWD, entry.path().c_str(), times, 0);
      }
  }
  std::int64_t tokens(Date since) {
    return ClaudeUsage::totals(source.entries(since), DateInterval{since, Date{1e18}}).tokens;
  }
  void expectReference(Date now, const std::string& zone, const std::string& what) {
    const Calendar calendar(zone, "en_US");
    const auto& entries = source.entries(earliestStart(now, calendar));
    for (const auto& [scope, expected] : referenceTotals(root, now, zone))
      ASSERT_EQ(described(ClaudeUsage::totals(entries, scope, now, calendar)), expected)
          << what << ", " << nameOf(scope);
  }

  TemporaryFolder folder;
  fs::path root = folder / ".claude";
  /// Other logs and orders with --gtest_shuffle --gtest_random_seed=N.
  UsageLogs logs{root, 7U + static_cast<unsigned>(testing::UnitTest::GetInstance()->random_seed())};
  ClaudeUsageSource source{root};
};

TEST_F(ClaudeUsageSourceTest, GeneratedLogsGiveTheReferenceTotals) {
  const Date now = date("2026-03-29T10:20:00Z");
  const char* folders[] = {"-home-ann-work-app", "-home-ann-日本-größer", "-srv-build",
                           "-home-ann-work-app/3f/subagents", "loose"};
  for (int i = 0; i < 12; ++i) {
    Date time = now - logs.number(600, 9 * 86'400);
    append(logs.file(folders[i % 5], "session " + std::to_string(i)), logs.session(time, 25));
  }
  touchAll(now);
  expectReference(now, "Europe/Berlin", "all");
}

TEST_F(ClaudeUsageSourceTest, ScopesBeginAtTheUsersMidnightAcrossClockChanges) {
  struct Case {
    const char* now;
    const char* zone;
  };
  // Clocks go forwards and back in the week before, in the night before, and at midnight itself.
  for (const Case& c : {Case{"2026-03-29T10:00:00Z", "Europe/Berlin"},
                        Case{"2026-04-02T22:30:00Z", "Europe/Berlin"},
                        Case{"2026-10-25T01:30:00Z", "Europe/Berlin"},
                        Case{"2026-11-05T05:00:00Z", "America/New_York"},
                        Case{"2026-09-06T12:00:00Z", "America/Santiago"},
                        Case{"2026-01-01T00:00:00Z", "Pacific/Kiritimati"}}) {
    fs::remove_all(root);
    const Date now = date(c.now);
    const Calendar calendar(c.zone, "en_US");
    std::string lines;
    for (const auto scope :
         {ClaudeUsageScope::week, ClaudeUsageScope::today, ClaudeUsageScope::block})
      for (const double offset : {-3600.0, -0.25, 0.0, 0.25, 3600.0})
        lines += logs.usageLine(start(scope, now, calendar) + offset, logs.newID("m"),
                                logs.newID("r"), logs.numbers());
    append(logs.file("-home-ann-app", "one"), lines);
    append(logs.file("-home-ann-app", "two"),
           logs.usageLine(now + 60, logs.newID("m"), {}, logs.numbers()));
    touchAll(now);
    ClaudeUsageSource fresh(root);
    const auto& entries = fresh.entries(earliestStart(now, calendar));
    for (const auto& [scope, expected] : referenceTotals(root, now, c.zone))
      EXPECT_EQ(described(ClaudeUsage::totals(entries, scope, now, calendar)), expected)
          << c.now << " " << c.zone << " " << nameOf(scope);
  }
}

/// What happens to logs, in any order.
class ChangingLogs {
public:
  ChangingLogs(UsageLogs& logs, const TemporaryFolder& folder) : logs_(logs), folder_(folder) {}

  /// Does something at `now`, which it may change, and says what.
  std::string change(Date& now, int step) {
    switch (files_.size() < 3 ? 0 : logs_.number(0, 10)) {
    case 0:
      begin(now, step);
      return "new";
    case 1:
    case 2:
    case 3:
      grow(false);
      return "grown";
    case 4:
      grow(true);
      return "half a line";
    case 5: {
      const auto path = files_[any()];
      fs::resize_file(path, fs::file_size(path) * static_cast<unsigned>(logs_.number(0, 99)) / 100);
      return "cut";
    }
    case 6:
      writeAnew(now);
      return "written anew";
    case 7:
      replace();
      return "replaced";
    case 8:
      rotate(step);
      return "rotated";
    case 9: {
      const auto at = any();
      fs::remove(files_[at]);
      files_.erase(files_.begin() + static_cast<std::ptrdiff_t>(at));
      return "deleted";
    }
    default: // no file is so old that it would be passed over
      now = now + logs_.number(-20'000, 80'000);
      return "another moment";
    }
  }

private:
  std::size_t any() {
    return static_cast<std::size_t>(logs_.number(0, static_cast<int>(files_.size()) - 1));
  }
  void begin(Date now, int step) {
    const auto path = logs_.file(fmt::format("-home-ann-p{}", step % 4), std::to_string(step));
    times_[path] = now - logs_.number(0, 8 * 86'400);
    append(path, logs_.session(times_[path], logs_.number(1, 40)));
    files_.push_back(path);
  }
  /// Of half a line, what follows at some later growth is no line.
  void grow(bool byHalfALine) {
    const auto path = files_[any()];
    auto lines = logs_.session(times_[path], logs_.number(1, 5));
    if (byHalfALine)
      lines.resize(lines.size() - static_cast<std::size_t>(logs_.number(1, 200)));
    append(path, lines);
  }
  /// Longer than before.
  void writeAnew(Date now) {
    const auto path = files_[any()];
    const auto size = fs::file_size(path);
    std::string lines;
    Date time = now - 3600;
    while (lines.size() <= size)
      lines += logs_.session(time, 3);
    put(path, lines);
    times_[path] = time;
  }
  /// Another file of the same length in its place.
  void replace() {
    const auto path = files_[any()];
    auto bytes = contents(path);
    if (const auto at = bytes.find("\"output_tokens\":"); at != std::string::npos)
      bytes[at + 16] = '9';
    put(folder_ / "other", bytes);
    fs::rename(folder_ / "other", path);
  }
  /// The old one goes on under another name.
  void rotate(int step) {
    const auto path = files_[any()];
    const auto old = path.parent_path() / ("old" + std::to_string(step) + ".jsonl");
    fs::rename(path, old);
    files_.push_back(old);
    times_[old] = times_[path];
    append(path, logs_.session(times_[path], 2));
  }

  UsageLogs& logs_;
  const TemporaryFolder& folder_;
  std::vector<fs::path> files_;
  std::map<fs::path, Date> times_;
};

/// A refresh after each step; time goes on, and once back.
TEST_F(ClaudeUsageSourceTest, AnyInterleavingOfChangesGivesTheReferenceTotals) {
  Date now = Date::fromUnixSeconds(static_cast<double>(std::time(nullptr)));
  ChangingLogs changing(logs, folder);
  for (int step = 0; step < 60; ++step) {
    const auto what = changing.change(now, step);
    expectReference(now, "UTC", fmt::format("step {}, {}", step, what));
  }
}

TEST_F(ClaudeUsageSourceTest, ReadsNothingTwice) {
  const Date now = Date::fromUnixSeconds(static_cast<double>(std::time(nullptr)));
  const auto path = logs.file("-home-ann-app", "a");
  Date time = now - 3000;
  append(path, logs.session(time, 300));
  const auto first = tokens(now - 86'400);
  EXPECT_GT(first, 0);
  EXPECT_EQ(source.bytesRead(), fs::file_size(path));
  tokens(now - 86'400);
  EXPECT_EQ(source.bytesRead(), fs::file_size(path));
  const auto line = logs.usageLine(time, "m", "r", {1, 1, 1, 1});
  append(path, line.substr(0, 30));
  EXPECT_EQ(tokens(now - 86'400), first) << "half a line waits";
  append(path, line.substr(30));
  EXPECT_EQ(tokens(now - 86'400), first + 4);
  EXPECT_EQ(source.bytesRead(), fs::file_size(path) + 30) << "but for the half line";
}

TEST_F(ClaudeUsageSourceTest, WhatComesAndGoesInFoldersThatStoodStillIsFound) {
  const Date now = Date::fromUnixSeconds(static_cast<double>(std::time(nullptr)));
  const auto projects = root / "projects";
  const auto project = projects / "-home-ann-app";
  // A message counts a digit of its own.
  const auto log = [&](const fs::path& name, int digit) {
    fs::create_directories((project / name).parent_path());
    append(project / name, logs.usageLine(now - 60, logs.newID("m"), "r", {digit, 0, 0, 0}));
  };
  const auto expect = [&](std::int64_t sum, const char* what) {
    EXPECT_EQ(tokens(now - 86'400), sum) << what;
    // From now on their names need not be read again: the clock has left the last change behind.
    for (const auto& folder : {projects, project, project / "below", projects / "-other"})
      if (std::error_code error; fs::exists(folder, error))
        fs::last_write_time(folder, fs::last_write_time(folder) - std::chrono::hours(1));
    EXPECT_EQ(tokens(now - 86'400), sum) << what << ", later";
  };
  log("a.jsonl", 1);
  log("below/b.jsonl", 10);
  expect(11, "at first");
  log("c.jsonl", 100);
  expect(111, "a new file");
  log("below/d.jsonl", 1000);
  expect(1111, "a new file further below");
  log("a.jsonl", 2);
  expect(1113, "a file that grew");
  fs::remove(project / "c.jsonl");
  expect(1013, "a file less");
  fs::rename(project / "below", projects / "-other");
  expect(1013, "a folder elsewhere");
  log("below/e.jsonl", 10'000);
  expect(11'013, "another one in its place");
  fs::remove_all(project);
  expect(1010, "a folder less");
  log("f.jsonl", 100'000);
  expect(101'010, "the folder made anew");
}

TEST_F(ClaudeUsageSourceTest, ReadsBackOnlyToTheFirstOlderMessage) {
  const Date now = Date::fromUnixSeconds(static_cast<double>(std::time(nullptr)));
  const auto path = logs.file("-home-ann-app", "a");
  Date time = now - 30 * 86'400;
  append(path, logs.session(time, 2000));
  for (int i = 0; i < 3; ++i)
    append(path, logs.usageLine(now - 60, logs.newID("m"), "r", {1, 0, 0, 0}));
  EXPECT_EQ(tokens(now - 86'400), 3);
  EXPECT_LT(source.bytesRead(), fs::file_size(path) / 4);
  EXPECT_GT(tokens(now - 40 * 86'400), 3) << "an earlier period is read anew";
}

TEST_F(ClaudeUsageSourceTest, LinesOverPieceBoundsAndTooLongOnes) {
  const Date now = Date::fromUnixSeconds(static_cast<double>(std::time(nullptr)));
  // Sums tell which lines were read: each line has a digit of its own.
  const auto path = logs.file("-home-ann-app", "long");
  const std::vector<std::size_t> lengths = {
      10, 300'000, 1'000'000, 262'144 - 400, 262'144, 50, 3'900'000, 5'000'000, 10};
  std::string all;
  std::int64_t expected = 0;
  std::int64_t digit = 1;
  for (const auto length : lengths) {
    all += logs.usageLine(now - 60, logs.newID("m"), "r", {static_cast<int>(digit), 0, 0, 0},
                          std::string(length, 'x'));
    if (length < 4'000'000)
      expected += digit;
    digit *= 10;
  }
  put(path, all);
  EXPECT_EQ(tokens(now - 86'400), expected) << "backwards";
  const auto grown = logs.file("-home-ann-app", "grown");
  put(grown, "\n");
  EXPECT_EQ(tokens(now - 86'400), expected);
  std::string again = all;
  for (std::size_t at = 0; (at = again.find("\"id\":\"m", at)) != std::string::npos; ++at)
    again.replace(at, 7, "\"id\":\"n");
  append(grown, again);
  EXPECT_EQ(tokens(now - 86'400), 2 * expected) << "forwards";
}

TEST_F(ClaudeUsageSourceTest, OldMissingAndUnreadableFilesAreNothing) {
  const Date now = Date::fromUnixSeconds(static_cast<double>(std::time(nullptr)));
  append(logs.file("-home-ann-app", "a"), logs.usageLine(now - 5, "m", "r", {}));
  EXPECT_GT(tokens(now - 60), 0);
  touchAll(now - 120);
  EXPECT_EQ(tokens(now - 60), 0) << "not modified since";
  ::mkfifo((root / "projects" / "-home-ann-app" / "pipe.jsonl").c_str(), 0600);
  fs::create_directory(root / "projects" / "-home-ann-app" / "folder.jsonl");
  fs::create_directory_symlink(root, root / "projects" / "circle");
  EXPECT_EQ(tokens(now - 60), 0);
  fs::remove_all(root);
  EXPECT_EQ(tokens(now - 60), 0);
  EXPECT_FALSE(source.isAvailable());
}

} // namespace
} // namespace tavrin
