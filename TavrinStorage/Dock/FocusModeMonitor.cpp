#include "TavrinStorage/Dock/FocusModeMonitor.h"

#include <mutex>

namespace tavrin {

struct FocusModeMonitor::State {
  State(FocusStatusProvider& source, Log lines) : provider(source), log(std::move(lines)) {}

  void tick() {
    isWaiting = false;
    if (!isRunning)
      return;
    const auto isFocused = provider.isFocused();
    if (!isFocused)
      return;
    Handler toCall;
    {
      const std::lock_guard guard(lock);
      if (lastValue == isFocused)
        return;
      lastValue = isFocused;
      toCall = handler;
    }
    log.info(std::string("focus changed: isFocused=") + (*isFocused ? "true" : "false"));
    if (toCall && isRunning)
      toCall(*isFocused);
  }

  FocusStatusProvider& provider;
  Log log;
  std::atomic<bool> isRunning = false;
  /// A question is on the queue; a slow provider must not fill it.
  std::atomic<bool> isWaiting = false;
  std::mutex lock;
  Handler handler;
  std::optional<bool> lastValue;
};

FocusModeMonitor::FocusModeMonitor(RunLoop& runLoop, FocusStatusProvider& provider, double interval,
                                   Log log)
    : runLoop_(runLoop), interval_(interval),
      state_(std::make_shared<State>(provider, std::move(log))), queue_(runLoop.makeSerialQueue()) {
}

void FocusModeMonitor::start(Handler handler) {
  {
    const std::lock_guard guard(state_->lock);
    state_->handler = std::move(handler);
  }
  state_->isRunning = true;
  ask();
  timer_ = runLoop_.repeat(interval_, [this] { ask(); });
}

void FocusModeMonitor::stop() {
  state_->isRunning = false;
  timer_.reset();
}

void FocusModeMonitor::ask() {
  if (!state_->isWaiting.exchange(true))
    queue_->run([state = state_] { state->tick(); });
}

std::optional<bool> FocusModeMonitor::lastValue() const {
  const std::lock_guard guard(state_->lock);
  return state_->lastValue;
}

} // namespace tavrin
