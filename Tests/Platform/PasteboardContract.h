#pragma once

#include "TavrinPlatform/Pasteboard.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

/// What every Pasteboard does. A rig has `board()`, `copy(type, bytes)`, as another program copies
/// and keeps it, and `comesTrue(condition)`, which gives the adapter its time.
namespace tavrin::test {

template <class Rig> class PasteboardContract : public testing::Test {
protected:
  using Capture = Pasteboard::Capture;
  TokenPtr observe(const Pasteboard::Limits& limits) {
    auto token = rig.board().observe(
        limits,
        {[this](std::int64_t count) { changes.push_back(count); },
         [this](Capture capture) { captures.push_back(std::move(capture)); }, [](std::int64_t) {}});
    // Whatever was there before is not what the test is about.
    rig.comesTrue([&] {
      rig.copy(Pasteboard::textType, "warm");
      return !captures.empty() && textOf(captures.back()) == "warm";
    });
    captures.clear();
    changes.clear();
    return token;
  }
  /// What is captured of this copy: the first that is not "warm" any more.
  Capture captured(const std::string& type, const std::string& bytes) {
    captures.clear();
    rig.copy(type, bytes);
    const auto isWarm = [](const Capture& capture) { return textOf(capture) == "warm"; };
    EXPECT_TRUE(rig.comesTrue([&] {
      std::erase_if(captures, isWarm);
      return !captures.empty();
    })) << type;
    return captures.empty() ? Capture{} : captures.front();
  }
  static std::string textOf(const Capture& capture) {
    return !capture.formats.empty() && capture.formats[0].data
               ? std::string(capture.formats[0].data->view())
               : "";
  }
  std::vector<std::int64_t> changes;
  std::vector<Capture> captures;
  Rig rig;
};
TYPED_TEST_SUITE_P(PasteboardContract);

TYPED_TEST_P(PasteboardContract, ACopyIsToldAndItsContentsFollow) {
  ASSERT_TRUE(this->rig.board().canObserve());
  const auto token = this->observe({});
  const auto capture = this->captured(Pasteboard::textType, "words ä");
  EXPECT_EQ(this->textOf(capture), "words ä");
  ASSERT_EQ(capture.formats.size(), 1U);
  EXPECT_EQ(capture.formats[0].type, Pasteboard::textType);
  EXPECT_EQ(capture.formats[0].size, 8U);
  EXPECT_FALSE(capture.isOwn);
  ASSERT_FALSE(this->changes.empty());
  EXPECT_EQ(capture.changeCount, this->changes.back()) << "told of before";
}

TYPED_TEST_P(PasteboardContract, LongTextIsCutAndALargePictureIsCounted) {
  const auto token = this->observe({.textBytes = 8, .imageBytes = 4});
  EXPECT_EQ(this->textOf(this->captured(Pasteboard::textType, "0123456789")), "01234567");
  const auto small = this->captured(Pasteboard::pngType, "1234");
  ASSERT_EQ(small.formats.size(), 1U);
  EXPECT_EQ(small.formats[0].type, Pasteboard::pngType);
  EXPECT_EQ(this->textOf(small), "1234");
  const auto large = this->captured(Pasteboard::pngType, "12345");
  ASSERT_EQ(large.formats.size(), 1U);
  EXPECT_EQ(large.formats[0].data, nullptr);
  EXPECT_EQ(large.formats[0].size, 5U);
}

TYPED_TEST_P(PasteboardContract, AWriteOfThisProcessIsKnownAsThat) {
  const auto token = this->observe({});
  this->rig.board().writeText("mine");
  // What was copied before may still be under way.
  EXPECT_TRUE(this->rig.comesTrue(
      [&] { return !this->captures.empty() && this->captures.back().isOwn; }));
  EXPECT_FALSE(this->captured(Pasteboard::textType, "theirs").isOwn);
}

TYPED_TEST_P(PasteboardContract, WhoHasGoneIsToldNothing) {
  auto first = this->observe({});
  first.reset();
  this->rig.copy(Pasteboard::textType, "unseen");
  std::vector<std::string> seen;
  const auto second = this->rig.board().observe(
      {}, {[](std::int64_t) {},
           [&](Pasteboard::Capture capture) { seen.push_back(this->textOf(capture)); },
           [](std::int64_t) {}});
  EXPECT_TRUE(this->rig.comesTrue([&] {
    this->rig.copy(Pasteboard::textType, "seen");
    return !seen.empty() && seen.back() == "seen";
  }));
  EXPECT_TRUE(this->captures.empty() && this->changes.empty());
}

REGISTER_TYPED_TEST_SUITE_P(PasteboardContract, ACopyIsToldAndItsContentsFollow,
                            LongTextIsCutAndALargePictureIsCounted,
                            AWriteOfThisProcessIsKnownAsThat, WhoHasGoneIsToldNothing);

} // namespace tavrin::test
