#pragma once

#include "TavrinPlatform/Pasteboard.h"
#include "TavrinPlatform/Qt/QtRunLoop.h"
#include "Tests/Linux/Desk.h"

#include <QCoreApplication>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tavrin {

/// What a pasteboard tells of the copies of other programs.
template <class Board> class PasteboardWatch : public testing::Test {
protected:
  void watch(const Pasteboard::Limits& limits) {
    ASSERT_TRUE(board_.canObserve());
    token_ = board_.observe(
        limits, {[this](std::int64_t) { ++changes_; },
                 [this](Pasteboard::Capture capture) { captures_.push_back(std::move(capture)); },
                 [this](std::int64_t) { ++abandoned_; }});
  }
  void forget() {
    captures_.clear();
    changes_ = 0;
    abandoned_ = 0;
  }
  bool until(const std::function<bool()>& condition, int milliseconds = patience) {
    return eventually(
        [&] {
          QCoreApplication::processEvents();
          return condition();
        },
        milliseconds);
  }
  static std::string words(const Pasteboard::Capture& capture) {
    std::string all;
    for (const auto& format : capture.formats)
      all += format.type + "=" + (format.data ? std::string(format.data->view()) : "?") + ";";
    return all;
  }

  QtRunLoop loop_;
  Board board_{loop_};
  TokenPtr token_;
  int changes_ = 0;
  int abandoned_ = 0;
  std::vector<Pasteboard::Capture> captures_;
};

} // namespace tavrin
