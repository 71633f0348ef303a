#include "TavrinSlot/Controllers/Runs/EndNotification.h"

#include "Tests/Support/FakePlatform.h"

#include <gtest/gtest.h>

namespace tavrin::test {
namespace {

/// Answers when the test says so, as a user does.
struct AskingCenter final : UserNotificationCenter {
  void requestAuthorization(std::function<void(bool)> answer) override {
    questions.push_back(std::move(answer));
  }
  void add(const UserNotificationRequest& request) override {
    pending[request.identifier] = request;
  }
  void removePending(const std::string& identifier) override { pending.erase(identifier); }

  std::vector<std::function<void(bool)>> questions;
  std::map<std::string, UserNotificationRequest> pending;
};

struct EndNotificationTest : testing::Test {
  AskingCenter center;
  ManualClock clock{{1000}};
  std::optional<EndNotification> notice;

  void SetUp() override { notice.emplace(center, clock, "x.finished"); }
};

TEST_F(EndNotificationTest, IsAddedOnceAllowed) {
  notice->schedule(Date{1060}, "Tea", "Time's up");
  EXPECT_TRUE(center.pending.empty());
  center.questions.at(0)(true);
  EXPECT_EQ(center.pending.at("x.finished"),
            (UserNotificationRequest{"x.finished", "Tea", "Time's up", 60}));
}

TEST_F(EndNotificationTest, ARefusalAddsNothing) {
  notice->schedule(Date{1060}, "Tea", "Time's up");
  center.questions.at(0)(false);
  EXPECT_TRUE(center.pending.empty());
}

TEST_F(EndNotificationTest, IsAtLeastASecondAwayAndNeverForThePast) {
  notice->schedule(Date{1000.2}, "Tea", "Time's up");
  center.questions.at(0)(true);
  EXPECT_EQ(center.pending.at("x.finished").delay, 1);
  for (const std::optional<Date> end : {std::optional<Date>(), {Date{1000}}, {Date{900}}}) {
    notice->schedule(end, "Tea", "Time's up");
    EXPECT_TRUE(center.pending.empty());
    EXPECT_EQ(center.questions.size(), 1U) << "nothing to ask for";
  }
}

TEST_F(EndNotificationTest, ALateAnswerBringsBackNothing) {
  notice->schedule(Date{1060}, "Tea", "old");
  notice->schedule(Date{1090}, "Tea", "new");
  center.questions.at(1)(true);
  center.questions.at(0)(true);
  EXPECT_EQ(center.pending.at("x.finished").body, "new");

  notice->schedule(Date{1060}, "Tea", "old");
  notice->withdraw();
  center.questions.at(2)(true);
  EXPECT_TRUE(center.pending.empty());

  notice->schedule(Date{1060}, "Tea", "old");
  notice.reset();
  center.questions.at(3)(true);
  EXPECT_TRUE(center.pending.empty());
}

} // namespace
} // namespace tavrin::test
