#pragma once

#include "TavrinPlatform/CalendarStore.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

/// What every CalendarStore does. A rig has `store()`, `grant()`, after which access is asked for
/// and given, `settle()`, which lets answers come, and `change()`.
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
    tokens.push_back(store.events({Date{0}, 86'400}, {}, told("events")));
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
  this->rig.settle();
  EXPECT_EQ(answers, std::vector{CalendarAccess::granted});
  EXPECT_EQ(store.access(CalendarStore::Entity::events), CalendarAccess::granted);
}

TYPED_TEST_P(CalendarStoreContract, EveryQuestionIsAnsweredOnceAndLater) {
  this->rig.grant();
  const auto tokens = this->askAll();
  EXPECT_TRUE(this->answered.empty()) << "before the call has returned";
  this->rig.settle();
  std::sort(this->answered.begin(), this->answered.end());
  EXPECT_EQ(this->answered,
            (std::vector<std::string>{"accounts", "completed", "events", "reminders"}));
}

TYPED_TEST_P(CalendarStoreContract, WhoHasGoneIsNotAnswered) {
  this->rig.grant();
  this->askAll().clear();
  this->rig.settle();
  EXPECT_TRUE(this->answered.empty());
}

TYPED_TEST_P(CalendarStoreContract, ChangesAreToldWhileTheTokenLives) {
  int told = 0;
  this->rig.grant();
  auto token = this->rig.store().observeChanges([&] { ++told; });
  this->rig.change();
  this->rig.settle();
  EXPECT_EQ(told, 1);
  token.reset();
  this->rig.change();
  this->rig.settle();
  EXPECT_EQ(told, 1);
}

REGISTER_TYPED_TEST_SUITE_P(CalendarStoreContract, AccessIsAskedForAndGiven,
                            EveryQuestionIsAnsweredOnceAndLater, WhoHasGoneIsNotAnswered,
                            ChangesAreToldWhileTheTokenLives);

} // namespace tavrin::test
