#include "TavrinPlatform/Linux/Slot/BusReturn.h"

#include <algorithm>

namespace tavrin {

namespace {

/// Milliseconds between two looks: soon at first, for a service that is started again, and less
/// often where the session is over and nobody has told.
constexpr int firstInterval = 500;
constexpr int longestInterval = 5'000;

} // namespace

BusReturn::BusReturn(Open open, std::function<bool()> isBack)
    : open_(std::move(open)), isBack_(std::move(isBack)), interval_(firstInterval) {
  timer_.start(interval_, this);
}

void BusReturn::timerEvent(QTimerEvent*) {
  if (open_() == nullptr) {
    interval_ = std::min(interval_ * 2, longestInterval);
    timer_.start(interval_, this);
  } else if (isBack_()) {
    timer_.stop();
  } else {
    timer_.start(firstInterval, this);
  }
}

} // namespace tavrin
