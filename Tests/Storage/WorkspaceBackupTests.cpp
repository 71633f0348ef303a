#include "TavrinCore/Base/ISO8601.h"
#include "TavrinStorage/Dock/FocusModeMonitor.h"
#include "TavrinStorage/Dock/WorkspaceBackupStore.h"
#include "TavrinStorage/Timestamp.h"
#include "Tests/Storage/TemporaryFolder.h"
#include "Tests/Support/ManualRunLoop.h"

#include <gtest/gtest.h>

namespace tavrin {
namespace {

namespace fs = std::filesystem;
using Reason = WorkspaceBackup::Reason;

class WorkspaceBackupTest : public testing::Test {
protected:
  void write(int generation) {
    put(folder / "profiles.json",
        R"({"version":2,"profiles":[]})" + std::string(static_cast<std::size_t>(generation), ' '));
    put(folder / "widgets.json", R"({"version":1,"widgets":[]})");
  }
  std::vector<std::string> ids() const {
    std::vector<std::string> all;
    for (const auto& backup : store.list())
      all.push_back(backup.id());
    return all;
  }

  TemporaryFolder folder;
  WorkspaceBackupStore store{folder.path()};
  Date moment = Date::fromUnixSeconds(1794691247.123);
};

TEST_F(WorkspaceBackupTest, BacksUpWhatChanged) {
  EXPECT_FALSE(store.backUp(Reason::launch, moment));
  EXPECT_TRUE(store.list().empty());
  write(0);
  const auto first = store.backUp(Reason::launch, moment);
  ASSERT_TRUE(first);
  EXPECT_EQ(first->id(), "2026-11-14T21-20-47.123Z-launch");
  EXPECT_EQ(store.list(), std::vector{*first});
  EXPECT_EQ(JSONValue::parse(contents(first->url / "info.json")),
            JSONValue::parse(R"({"date":"2026-11-14T21:20:47Z","reason":"launch"})"));
  EXPECT_FALSE(store.backUp(Reason::quit, moment + 5));
  write(1);
  EXPECT_EQ(store.backUp(Reason::launch, moment)->id(), "2026-11-14T21-20-47.123Z-001-launch");
  write(2);
  EXPECT_EQ(store.backUp(Reason::launch, moment)->id(), "2026-11-14T21-20-47.123Z-002-launch");
  EXPECT_EQ(ids().front(), "2026-11-14T21-20-47.123Z-002-launch");
  EXPECT_EQ(ids().back(), first->id());
}

TEST_F(WorkspaceBackupTest, KeepsTheNewestFortyAndTheOneJustMade) {
  for (int i = 0; i < 41; ++i) {
    write(i);
    store.backUp(Reason::quit, moment + i);
  }
  EXPECT_EQ(ids().size(), 40U);
  EXPECT_EQ(ids().back(), "2026-11-14T21-20-48.123Z-quit");
  write(99);
  const auto made = store.backUp(Reason::quit, moment - 86400);
  EXPECT_EQ(ids().size(), 40U);
  EXPECT_EQ(ids().back(), made->id());
}

TEST_F(WorkspaceBackupTest, RestoresAndKeepsWhatWas) {
  write(1);
  const auto old = store.backUp(Reason::launch, moment);
  write(2);
  std::string kept;
  store.didKeepCurrent = [&](const WorkspaceBackup& backup) {
    kept = backup.id();
    EXPECT_EQ(contents(folder / "profiles.json"), contents(backup.url / "profiles.json"));
  };
  store.restore(*old, moment + 60);
  EXPECT_EQ(contents(folder / "profiles.json"), contents(old->url / "profiles.json"));
  EXPECT_EQ(kept, "2026-11-14T21-21-47.123Z-restore");
  // Where the files as they are equal the newest backup, that one is named and none is made.
  write(3);
  const auto newest = store.backUp(Reason::quit, moment + 120);
  store.restore(*old, moment + 180);
  EXPECT_EQ(kept, newest->id());
  EXPECT_EQ(ids().size(), 3U);
  fs::remove(old->url / "widgets.json");
  put(folder / "widgets.json", "mine");
  store.restore(*old, moment + 240);
  EXPECT_EQ(contents(folder / "widgets.json"), "mine");
  EXPECT_TRUE(store.contents(*old).widgets.widgets.empty());
}

TEST_F(WorkspaceBackupTest, TheBackupToRestoreIsNotPrunedAway) {
  for (int i = 0; i < 40; ++i) {
    write(i);
    store.backUp(Reason::quit, moment + i);
  }
  const auto oldest = store.list().back();
  write(99);
  store.restore(oldest, moment + 100);
  EXPECT_TRUE(fs::exists(oldest.url / "info.json"));
  EXPECT_EQ(ids().size(), 40U);
}

TEST_F(WorkspaceBackupTest, SkipsFoldersWithoutAReadableNote) {
  write(0);
  store.backUp(Reason::launch, moment);
  const auto stray = store.directory() / "stray";
  fs::create_directories(stray);
  for (const std::string note :
       {"", "{", "[]", R"({"date":1,"reason":"quit"})", R"({"date":"yesterday","reason":"quit"})",
        R"({"date":"2026-01-01T00:00:00Z","reason":"whim"})"}) {
    put(stray / "info.json", note);
    EXPECT_EQ(ids().size(), 1U) << note;
  }
  put(stray / "info.json", R"({"date":"2026-01-01T00:00:00.5Z","reason":"quit"})");
  EXPECT_EQ(ids().back(), "stray");
  fs::create_directories(store.directory() / "x" / "info.json");
  EXPECT_EQ(ids().size(), 2U);
}

TEST(Timestamp, ReadsWhatItWrites) {
  for (const double seconds : {0.0, -1.0, 951782399.0, 1794691247.0, 253402300799.0}) {
    const auto date = Date::fromUnixSeconds(seconds);
    EXPECT_EQ(dateFromISO8601(iso8601(date)), date);
    EXPECT_EQ(fileStamp(date).size(), fileStampLength);
    EXPECT_EQ(dateFromFileStamp(fileStamp(date)), date);
  }
  for (const auto* text : {"", "2026-11-14T21-20-47.123", "2026-02-30T00-00-00.000Z"})
    EXPECT_FALSE(dateFromFileStamp(text)) << text;
  EXPECT_EQ(fileStamp(Date::fromUnixSeconds(-0.001)), "1969-12-31T23-59-59.999Z");
  EXPECT_EQ(fileStamp(Date::fromUnixSeconds(1e300)).size(), fileStampLength);
  for (const auto* text : {"", "2026-02-30T00:00:00Z", "2026-01-01", "2026-01-01T00:00:00",
                           "2026-01-01T00:00:00.Z", "2026-01-01T25:00:00Z"})
    EXPECT_FALSE(dateFromISO8601(text)) << text;
}

struct Source final : FocusStatusProvider {
  std::optional<bool> isFocused() override {
    ++asked;
    return state;
  }
  bool isAuthorized() override { return true; }
  std::optional<bool> state;
  int asked = 0;
};

struct Lines final : LogSink {
  void write(LogLevel, std::string_view, std::string_view, std::string_view message) override {
    lines.emplace_back(message);
  }
  std::vector<std::string> lines;
};

TEST(FocusModeMonitor, TellsOfEveryChange) {
  test::ManualClock clock{{}};
  test::ManualRunLoop loop(clock);
  Source source;
  Lines log;
  FocusModeMonitor monitor(loop, source, 2, Log(log, "focus"));
  std::vector<bool> told;
  const auto pass = [&](std::optional<bool> state) {
    source.state = state;
    loop.advance(2);
    loop.runBackground();
  };
  monitor.start([&](bool isFocused) { told.push_back(isFocused); });
  loop.runBackground();
  EXPECT_EQ(source.asked, 1);
  EXPECT_TRUE(told.empty());
  for (const auto state : {std::optional(true), {true}, {std::nullopt}, {true}, {false}, {false}})
    pass(state);
  EXPECT_EQ(told, (std::vector{true, false}));
  EXPECT_EQ(log.lines, (std::vector<std::string>{"focus changed: isFocused=true",
                                                 "focus changed: isFocused=false"}));
  // A provider that hangs gets one question, not one an interval.
  const int before = source.asked;
  loop.advance(20);
  EXPECT_EQ(loop.waitingBackground(), 1U);
  loop.runBackground();
  EXPECT_EQ(source.asked, before + 1);
  monitor.stop();
  pass(true);
  EXPECT_EQ(told.size(), 2U);
  EXPECT_EQ(loop.activeTimers(), 0U);
}

} // namespace
} // namespace tavrin
