#pragma once

#include "TavrinPlatform/CalendarStore.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <vector>

/// What every CalendarStore does. A rig has `store()`, `grant()`, after which access is asked for
/// and given, `comesTrue(condition)`, which lets answers come, and `change()`.
namespace tavrin::test {

template <class Rig> class CalendarStoreContract : public testing::Test {
protected:
  using Store = CalendarStore;
  /// One of each question; what each is answered goes to `answered`.
  std::vector<TokenPtr> askAll() {
    const auto told = [this](const char* what) {
      return [this, what](const auto&) { answered.emplace_back(what); };
    };
    auto& store = rig.store();
    std::vector<TokenPtr> tokens;
    tokens.push_back(store.accounts(Store::Entity::events, told("accounts")));
    tokens.push_back(store.events({Date{0}, Date{86'400}}, {}, told("events")));
    tokens.push_back(store.reminders("list", told("reminders")));
    tokens.push_back(store.setCompleted({}, true, told("completed")));
    return tokens;
  }
  std::vector<std::string> answered;
  Rig rig;
};
TYPED_TEST_SUITE_P(CalendarStoreContract);

TYPED_TEST_P(CalendarStoreContract, AccessIsAskedForAndGiven) {
  std::vector<CalendarAccess> answers;
  const auto answer = [&](CalendarAccess access) { answers.push_back(access); };
  auto& store = this->rig.store();
  EXPECT_EQ(store.access(CalendarStore::Entity::events), CalendarAccess::notAsked);
  auto dropped = store.requestAccess(CalendarStore::Entity::events, answer);
  dropped.reset();
  const auto token = store.requestAccess(CalendarStore::Entity::events, answer);
  EXPECT_TRUE(answers.empty());
  this->rig.grant();
  ASSERT_TRUE(this->rig.comesTrue([&] { return !answers.empty(); }));
  EXPECT_EQ(answers, std::vector{CalendarAccess::granted});
  EXPECT_EQ(store.access(CalendarStore::Entity::events), CalendarAccess::granted);
}

TYPED_TEST_P(CalendarStoreContract, EveryQuestionIsAnsweredOnceAndLater) {
  this->rig.grant();
  const auto tokens = this->askAll();
  EXPECT_TRUE(this->answered.empty()) << "before the call has returned";
  ASSERT_TRUE(this->rig.comesTrue([&] { return this->answered.size() == 4; }));
  std::sort(this->answered.begin(), this->answered.end());
  EXPECT_EQ(this->answered,
            (std::vector<std::string>{"accounts", "completed", "events", "reminders"}));
}

TYPED_TEST_P(CalendarStoreContract, WhoHasGoneIsNotAnswered) {
  this->rig.grant();
  this->askAll().clear();
  // One that is answered, after them.
  bool isAnswered = false;
  const auto token = this->rig.store().accounts(CalendarStore::Entity::events,
                                                [&](const auto&) { isAnswered = true; });
  EXPECT_TRUE(this->rig.comesTrue([&] { return isAnswered; }));
  EXPECT_TRUE(this->answered.empty());
}

TYPED_TEST_P(CalendarStoreContract, ChangesAreToldWhileTheTokenLives) {
  int first = 0, second = 0;
  this->rig.grant();
  auto one = this->rig.store().observeChanges([&] { ++first; });
  const auto two = this->rig.store().observeChanges([&] { ++second; });
  // What was read is what changes are told of.
  bool isRead = false;
  const auto access = this->rig.store().requestAccess(CalendarStore::Entity::events, [](auto) {});
  const auto asked = this->rig.store().events({Date{0}, Date{86'400}}, {},
                                              [&](const auto&) { isRead = true; });
  ASSERT_TRUE(this->rig.comesTrue([&] { return isRead; }));
  first = second = 0;
  ASSERT_TRUE(this->rig.comesTrue([&] {
    this->rig.change();
    return first > 0 && second > 0;
  }));
  one.reset();
  first = second = 0;
  ASSERT_TRUE(this->rig.comesTrue([&] {
    this->rig.change();
    return second > 0;
  }));
  EXPECT_EQ(first, 0);
}

REGISTER_TYPED_TEST_SUITE_P(CalendarStoreContract, AccessIsAskedForAndGiven,
                            EveryQuestionIsAnsweredOnceAndLater, WhoHasGoneIsNotAnswered,
                            ChangesAreToldWhileTheTokenLives);

} // namespace tavrin::test
