#include "TavrinPlatform/POSIX/ThreadPool.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <system_error>
#include <thread>

namespace tavrin {

/// Outlives the pool while a thread waits for work that will not come.
struct ThreadPool::State {
  State(std::size_t most, std::chrono::milliseconds lifetime)
      : mostThreads(most), idleLifetime(lifetime) {}

  const std::size_t mostThreads;
  const std::chrono::milliseconds idleLifetime;
  std::mutex mutex;
  std::condition_variable given;
  std::condition_variable done;
  std::deque<std::function<void()>> waiting;
  std::size_t threads = 0;
  std::size_t idle = 0;

  /// Does what waits, and returns when nothing has come for long.
  void serve() {
    std::unique_lock lock(mutex);
    for (;;) {
      ++idle;
      if (waiting.empty() && idle == threads)
        done.notify_all();
      const bool isThere = given.wait_for(lock, idleLifetime, [this] { return !waiting.empty(); });
      --idle;
      if (!isThere) {
        --threads;
        return;
      }
      {
        const auto work = std::move(waiting.front());
        waiting.pop_front();
        lock.unlock();
        work();
        // What the work holds goes before the pool says that it is done.
      }
      lock.lock();
    }
  }
};

ThreadPool::ThreadPool(std::size_t mostThreads, std::chrono::milliseconds idleLifetime)
    : state_(std::make_shared<State>(mostThreads, idleLifetime)) {}

ThreadPool::~ThreadPool() {
  finish();
}

void ThreadPool::start(std::function<void()> work) {
  std::unique_lock lock(state_->mutex);
  state_->waiting.push_back(std::move(work));
  state_->given.notify_one();
  if (state_->waiting.size() <= state_->idle || state_->threads == state_->mostThreads)
    return;
  try {
    std::thread([state = state_] { state->serve(); }).detach();
    ++state_->threads;
  } catch (const std::system_error&) {
    if (state_->threads > 0)
      return;
    const auto alone = std::move(state_->waiting.back());
    state_->waiting.pop_back();
    lock.unlock();
    alone();
  }
}

void ThreadPool::finish() {
  std::unique_lock lock(state_->mutex);
  state_->done.wait(lock,
                    [this] { return state_->waiting.empty() && state_->idle == state_->threads; });
}

} // namespace tavrin
