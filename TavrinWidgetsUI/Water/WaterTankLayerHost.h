#pragma once

#include "TavrinPlatform/RunLoop.h"

#include <functional>

namespace tavrin {

/// What a tank or a glass looks like at one moment.
struct WaterTank {
  /// 0 to 1.
  double level = 0;
  bool isDone = false;
  /// How rough the surface is, 0 (at rest) to 1.
  double swell = 0;
  /// Words stand on it: its surface is no lighter than they can be read on.
  bool isUnderWords = false;
  bool operator==(const WaterTank&) const = default;
};

/// Brings a tank from one level to the next: in a quarter of a second with a swell that dies down,
/// or at once. A tank at rest has no timer.
class WaterTankLayerHost {
public:
  static constexpr double duration = 0.25;
  static constexpr int frames = 10;

  explicit WaterTankLayerHost(RunLoop& runLoop) : runLoop_(runLoop) {}
  WaterTankLayerHost(const WaterTankLayerHost&) = delete;
  WaterTankLayerHost& operator=(const WaterTankLayerHost&) = delete;

  /// The tank as it is to be drawn now.
  const WaterTank& tank() const { return shown_; }
  bool isMoving() const { return timer_ != nullptr; }

  /// Moves to `level`; a way too short to be seen is taken at once.
  void pour(double level, bool isDone);
  /// Is at `level` at once. While it moves there already, it goes on moving.
  void settle(double level, bool isDone);
  /// Ends a movement where it leads.
  void stop();

  /// The tank looks different: a step of a movement was made.
  std::function<void()> onFrame;

private:
  void step();

  RunLoop& runLoop_;
  WaterTank shown_;
  WaterTank target_;
  double start_ = 0;
  int frame_ = 0;
  TokenPtr timer_;
};

} // namespace tavrin
