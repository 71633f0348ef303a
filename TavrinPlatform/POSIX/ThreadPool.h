#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>

namespace tavrin {

/// A few threads for work that no one waits for. They start with the first piece of work, and each
/// goes when it had nothing to do for a while.
class ThreadPool {
public:
  ThreadPool(std::size_t mostThreads, std::chrono::milliseconds idleLifetime);
  /// As `finish`.
  ~ThreadPool();
  ThreadPool(const ThreadPool&) = delete;
  ThreadPool& operator=(const ThreadPool&) = delete;

  /// Runs `work` as soon as a thread is free, pieces in the order in which they were given. Where
  /// the system has no thread left, here and at once. From any thread.
  void start(std::function<void()> work);
  /// Returns once everything that was given is done.
  void finish();

private:
  struct State;
  std::shared_ptr<State> state_;
};

} // namespace tavrin
