#pragma once

#include <functional>
#include <memory>

namespace tavrin {

/// Ends what it stands for when destroyed: a timer, an observation, a hold.
class Token {
public:
  virtual ~Token() = default;
};
using TokenPtr = std::unique_ptr<Token>;

/// Work in the order it was given, one piece at a time, off the main thread.
class SerialQueue {
public:
  /// Waits for the piece that runs; drops those that have not begun.
  virtual ~SerialQueue() = default;
  virtual void run(std::function<void()> work) = 0;
};

/// The main thread's event loop. All members but `post` are for the main thread.
class RunLoop {
public:
  virtual ~RunLoop() = default;

  /// Calls `fire` every `interval` seconds (at least a millisecond), first after one interval,
  /// until the token goes. A firing that is late does not pile up.
  [[nodiscard]] virtual TokenPtr repeat(double interval, std::function<void()> fire) = 0;

  /// Calls `fire` once, `delay` seconds from now, unless the token goes first.
  [[nodiscard]] virtual TokenPtr after(double delay, std::function<void()> fire) = 0;

  /// Calls `work` on the main thread soon. From any thread.
  virtual void post(std::function<void()> work) = 0;

  /// Runs `work` on a background thread, then `done` on the main thread unless `owner` is gone.
  /// `work` may outlast its owner: it refers to nothing of that. It may refer to the platform's
  /// services, which go only when no work is left; what is given after that is not done.
  virtual void background(std::function<void()> work, std::weak_ptr<void> owner,
                          std::function<void()> done) = 0;

  virtual std::unique_ptr<SerialQueue> makeSerialQueue() = 0;
};

} // namespace tavrin
