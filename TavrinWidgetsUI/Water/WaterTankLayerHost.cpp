#include "TavrinWidgetsUI/Water/WaterTankLayerHost.h"

#include <cmath>

namespace tavrin {
namespace {

constexpr double leastMove = 0.01;

double easeOut(double share) {
  return 1 - std::pow(1 - share, 3);
}

} // namespace

void WaterTankLayerHost::pour(double level, bool isDone) {
  target_ = {level, isDone, 0};
  if (std::abs(level - shown_.level) < leastMove) {
    stop();
    return;
  }
  start_ = shown_.level;
  frame_ = 0;
  // Frames are counted, not timed: a clock that is set meanwhile holds up nothing.
  timer_ = runLoop_.repeat(duration / frames, [this] { step(); });
}

void WaterTankLayerHost::settle(double level, bool isDone) {
  target_ = {level, isDone, 0};
  if (!isMoving())
    shown_ = target_;
}

void WaterTankLayerHost::stop() {
  timer_.reset();
  shown_ = target_;
}

void WaterTankLayerHost::step() {
  ++frame_;
  if (frame_ >= frames) {
    stop();
  } else {
    const double share = static_cast<double>(frame_) / frames;
    shown_ = {start_ + (target_.level - start_) * easeOut(share), target_.isDone, 1 - share};
  }
  if (onFrame)
    onFrame();
}

} // namespace tavrin
