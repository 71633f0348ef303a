#include "TavrinPlatform/POSIX/LoadingCalendarStore.h"

#include "Tests/Support/FakeCalendarStore.h"

#include <gtest/gtest.h>

namespace tavrin::test {
namespace {

class LoadingCalendarStoreTest : public testing::Test {
protected:
  using Entity = CalendarStore::Entity;

  ManualClock clock_{Date{0}};
  ManualRunLoop loop_{clock_};
  FakeCalendarStore* adapter_ = nullptr;
  LoadingCalendarStore store_{loop_, [this] {
                                return [this] {
                                  auto made = std::make_unique<FakeCalendarStore>(loop_);
                                  adapter_ = made.get();
                                  return made;
                                };
                              }};
};

TEST_F(LoadingCalendarStoreTest, WhatIsAskedMeanwhileIsAnsweredInOrder) {
  std::string answers;
  int changes = 0;
  const auto observation = store_.observeChanges([&] { ++changes; });
  const auto access =
      store_.requestAccess(Entity::events, [&](CalendarAccess) { answers += "access "; });
  const auto events =
      store_.events({Date{0}, Date{9}}, std::nullopt, [&](const auto&) { answers += "events "; });
  auto dropped = store_.accounts(Entity::events, [&](const auto&) { answers += "dropped "; });
  dropped.reset();
  loop_.runPosts();
  EXPECT_EQ(answers, "");
  EXPECT_EQ(store_.access(Entity::events), CalendarAccess::notAsked);
  loop_.runBackground();
  EXPECT_EQ(answers, "access events ");
  EXPECT_EQ(store_.access(Entity::events), CalendarAccess::granted);
  adapter_->changes.call();
  EXPECT_EQ(changes, 1);
}

TEST_F(LoadingCalendarStoreTest, ATokenEndsWhatItAskedForThenAndLater) {
  int changes = 0;
  auto early = store_.observeChanges([&] { ++changes; });
  loop_.runBackground();
  auto late = store_.observeChanges([&] { ++changes; });
  early.reset();
  adapter_->changes.call();
  EXPECT_EQ(changes, 1);
  late.reset();
  adapter_->changes.call();
  EXPECT_EQ(changes, 1);
}

TEST(LoadingCalendarStore, GoesBeforeItsAdapterIsThere) {
  ManualClock clock{Date{0}};
  ManualRunLoop loop{clock};
  bool isMade = false;
  auto store = std::make_unique<LoadingCalendarStore>(loop, [&] {
    return [&]() -> std::unique_ptr<CalendarStore> {
      isMade = true;
      return nullptr;
    };
  });
  store.reset();
  loop.runBackground();
  EXPECT_FALSE(isMade);
}

} // namespace
} // namespace tavrin::test
