#pragma once

#include "TavrinPlatform/ColourSampler.h"

#include <gtest/gtest.h>
#include <vector>

/// What every ColourSampler does. A rig has `sampler()`, `take(sample)`, what the user takes,
/// `cancel()` and `comesTrue(condition)`.
namespace tavrin::test {

template <class Rig> class ColourSamplerContract : public testing::Test {
protected:
  TokenPtr pick() {
    return rig.sampler().pick([this](const ColourSample& sample) { samples.push_back(sample); });
  }
  std::vector<ColourSample> samples;
  Rig rig;
};
TYPED_TEST_SUITE_P(ColourSamplerContract);

TYPED_TEST_P(ColourSamplerContract, AnswersOnceUnlessTheTokenGoesFirst) {
  using enum ColourSample::Outcome;
  auto token = this->pick();
  EXPECT_TRUE(this->samples.empty());
  const ColourSample orange{picked, 255, 128, 0};
  this->rig.take(orange);
  ASSERT_TRUE(this->rig.comesTrue([&] { return !this->samples.empty(); }));
  EXPECT_EQ(this->samples, std::vector{orange});
  token = this->pick();
  this->rig.cancel();
  ASSERT_TRUE(this->rig.comesTrue([&] { return this->samples.size() == 2; }));
  EXPECT_EQ(this->samples[1].outcome, cancelled);
  token = this->pick();
  token.reset();
  this->rig.take(orange);
  EXPECT_FALSE(this->rig.comesTrue([&] { return this->samples.size() > 2; }, 300));
}

REGISTER_TYPED_TEST_SUITE_P(ColourSamplerContract, AnswersOnceUnlessTheTokenGoesFirst);

} // namespace tavrin::test
