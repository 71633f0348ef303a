#pragma once

#include "TavrinCore/Base/Log.h"
#include "TavrinPlatform/FocusStatusProvider.h"
#include "TavrinPlatform/RunLoop.h"

#include <atomic>
#include <functional>
#include <memory>
#include <optional>

namespace tavrin {

/// Watches the user's Focus state and tells of every change; the first state that can be read is
/// one. Asks the provider on a queue of its own, and calls the handler there.
class FocusModeMonitor {
public:
  using Handler = std::function<void(bool isFocused)>;

  /// `interval` is in seconds.
  FocusModeMonitor(RunLoop& runLoop, FocusStatusProvider& provider, double interval, Log log);

  /// Asks at once, then every interval.
  void start(Handler handler);
  /// No call of the handler begins after this returns, unless one runs at that moment.
  void stop();

  std::optional<bool> lastValue() const;

private:
  struct State;

  void ask();

  RunLoop& runLoop_;
  double interval_;
  std::shared_ptr<State> state_;
  TokenPtr timer_;
  /// Destroyed first: it waits for the question that runs.
  std::unique_ptr<SerialQueue> queue_;
};

} // namespace tavrin
