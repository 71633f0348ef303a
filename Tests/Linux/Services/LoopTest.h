#pragma once

#include "TavrinPlatform/Qt/QtRunLoop.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <gtest/gtest.h>
#include <optional>

namespace tavrin::test {

/// Runs the real event loop until what is waited for is there.
class LoopTest : public testing::Test {
protected:
  template <class Condition> bool waitFor(const Condition& isThere, int milliseconds = 10'000) {
    QElapsedTimer timer;
    timer.start();
    while (!isThere()) {
      if (timer.elapsed() > milliseconds)
        return false;
      QElapsedTimer round;
      round.start();
      QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
      longestRound_ = std::max(longestRound_, static_cast<double>(round.nsecsElapsed()) / 1e6);
      if (round.elapsed() < 1)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 5);
    }
    return true;
  }
  /// The answer of a call that ends by a callback.
  template <class Answer, class Call> std::optional<Answer> answerOf(const Call& call) {
    std::optional<Answer> answer;
    const TokenPtr token = call([&](Answer value) { answer = std::move(value); });
    EXPECT_FALSE(answer.has_value()) << "the answer came before the call returned";
    waitFor([&] { return answer.has_value(); }, 30'000);
    return answer;
  }

  /// Milliseconds of the longest round of the loop.
  double longestRound_ = 0;
  QtRunLoop loop_;
};

} // namespace tavrin::test
