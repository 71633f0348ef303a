#pragma once

#include "TavrinPlatform/Clock.h"
#include "TavrinPlatform/POSIX/ThreadPool.h"
#include "TavrinPlatform/RunLoop.h"

#include <memory>
#include <optional>

namespace tavrin {

/// The toolkit's event loop. Repeating timers of up to two seconds share their wake-ups with
/// those of the other slots (they may be early or late by a twentieth of their interval); all
/// others are exact to the millisecond. Threads start with the first background work and go
/// after some seconds without any.
class QtRunLoop final : public RunLoop {
public:
  QtRunLoop();
  ~QtRunLoop() override;

  [[nodiscard]] TokenPtr repeat(double interval, std::function<void()> fire) override;
  [[nodiscard]] TokenPtr after(double delay, std::function<void()> fire) override;
  void post(std::function<void()> work) override;
  void background(std::function<void()> work, std::weak_ptr<void> owner,
                  std::function<void()> done) override;
  std::unique_ptr<SerialQueue> makeSerialQueue() override;

  /// Returns once no background work is under way: what was given is done, what is given from now
  /// on is dropped. What that work refers to may go after this.
  void endWork();

private:
  class Postbox;

  ThreadPool& pool();

  /// Made on the main thread; posts of other threads are delivered through it.
  std::unique_ptr<Postbox> postbox_;
  std::optional<ThreadPool> pool_;
  bool hasEnded_ = false;
};

class SystemClock final : public Clock {
public:
  Date now() const override;
};

} // namespace tavrin
