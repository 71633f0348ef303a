#pragma once

#include "TavrinPlatform/UserDefaults.h"

#include <gtest/gtest.h>

/// What every UserDefaults does. A rig has `defaults()` and `again()`, the same defaults as the
/// next process of the application finds them.
namespace tavrin::test {

template <class Rig> class UserDefaultsContract : public testing::Test {
protected:
  Rig rig;
};
TYPED_TEST_SUITE_P(UserDefaultsContract);

TYPED_TEST_P(UserDefaultsContract, KeepsEverySortOfValueOverARestart) {
  const JSONValue values[] = {JSONValue::parse("true"),
                              JSONValue::parse("0"),
                              JSONValue::parse("-12"),
                              JSONValue::parse("0.1"),
                              JSONValue::parse("9007199254740993"),
                              JSONValue::parse("\"Gl\\u00fcck\""),
                              JSONValue::parse("[1,{\"a\":[]}]"),
                              JSONValue::parse("{\"startedAt\":800000000.25}")};
  for (const auto& value : values) {
    this->rig.defaults().set("key", value);
    EXPECT_EQ(this->rig.defaults().value("key"), value) << value.compact();
    EXPECT_EQ(this->rig.again().value("key"), value) << value.compact();
  }
}

TYPED_TEST_P(UserDefaultsContract, KeysStandForThemselves) {
  EXPECT_EQ(this->rig.defaults().value("timerRun"), std::nullopt);
  this->rig.defaults().set("timerRun", JSONValue::parse("1"));
  this->rig.defaults().set("pomodoroRun", JSONValue::parse("2"));
  this->rig.defaults().remove("timerRun");
  this->rig.defaults().remove("never there");
  EXPECT_EQ(this->rig.again().value("timerRun"), std::nullopt);
  EXPECT_EQ(this->rig.again().value("pomodoroRun"), JSONValue::parse("2"));
}

REGISTER_TYPED_TEST_SUITE_P(UserDefaultsContract, KeepsEverySortOfValueOverARestart,
                            KeysStandForThemselves);

} // namespace tavrin::test
