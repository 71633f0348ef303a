#pragma once

#include "TavrinPlatform/Clock.h"
#include "TavrinPlatform/RunLoop.h"

#include <deque>
#include <functional>
#include <map>
#include <memory>

namespace tavrin::test {

/// A clock that stands still until a test moves it.
class ManualClock final : public Clock {
public:
  explicit ManualClock(Date start) : now_(start) {}
  Date now() const override { return now_; }
  void set(Date now) { now_ = now; }
  void advance(double seconds) { now_ = now_ + seconds; }

private:
  Date now_;
};

/// Timers fire when the test lets time pass; posts and background work run when it says so.
class ManualRunLoop final : public RunLoop {
public:
  explicit ManualRunLoop(ManualClock& clock) : clock_(clock) {}

  TokenPtr repeat(double interval, std::function<void()> fire) override {
    return schedule(interval, interval, std::move(fire));
  }
  TokenPtr after(double delay, std::function<void()> fire) override {
    return schedule(delay, 0, std::move(fire));
  }
  void post(std::function<void()> work) override { posts_.push_back(std::move(work)); }
  void background(std::function<void()> work, std::weak_ptr<void> owner,
                  std::function<void()> done) override {
    background_.push_back(
        [this, work = std::move(work), owner = std::move(owner), done = std::move(done)]() mutable {
          work();
          post([owner = std::move(owner), done = std::move(done)] {
            if (owner.lock())
              done();
          });
        });
  }
  std::unique_ptr<SerialQueue> makeSerialQueue() override { return std::make_unique<Queue>(*this); }

  /// Runs what was posted, and what that posts.
  void runPosts() {
    while (!posts_.empty()) {
      auto work = std::move(posts_.front());
      posts_.pop_front();
      work();
    }
  }
  /// Runs the waiting background work, then what it posted.
  void runBackground() {
    while (!background_.empty()) {
      auto work = std::move(background_.front());
      background_.pop_front();
      work();
    }
    runPosts();
  }
  /// Moves the clock on and fires what falls due on the way, in order.
  void advance(double seconds) {
    const Date end = clock_.now() + seconds;
    runPosts();
    while (true) {
      auto next = timers_.end();
      for (auto it = timers_.begin(); it != timers_.end(); ++it)
        if (next == timers_.end() || it->second.due < next->second.due)
          next = it;
      if (next == timers_.end() || next->second.due > end)
        break;
      clock_.set(next->second.due);
      const auto fire = next->second.fire;
      if (next->second.interval > 0)
        next->second.due = next->second.due + next->second.interval;
      else
        timers_.erase(next);
      ++firings;
      fire();
      runPosts();
    }
    clock_.set(end);
  }

  /// The clock goes on or back, the timers stand still: the computer slept, or the clock was set.
  void jumpClock(double seconds) {
    clock_.advance(seconds);
    for (auto& [id, timer] : timers_)
      timer.due = timer.due + seconds;
  }

  std::size_t activeTimers() const { return timers_.size(); }
  std::size_t waitingBackground() const { return background_.size(); }
  int firings = 0;

private:
  struct Timer {
    Date due;
    double interval;
    std::function<void()> fire;
  };
  struct TimerToken final : Token {
    TimerToken(ManualRunLoop& loop, int id) : loop(&loop), alive(loop.alive_), id(id) {}
    ~TimerToken() override {
      if (alive.lock())
        loop->timers_.erase(id);
    }
    ManualRunLoop* loop;
    std::weak_ptr<int> alive;
    int id;
  };
  struct Queue final : SerialQueue {
    explicit Queue(ManualRunLoop& loop) : loop(loop) {}
    void run(std::function<void()> work) override {
      loop.background_.push_back([work = std::move(work), alive = std::weak_ptr(alive)] {
        if (alive.lock())
          work();
      });
    }
    ManualRunLoop& loop;
    std::shared_ptr<int> alive = std::make_shared<int>();
  };

  TokenPtr schedule(double delay, double interval, std::function<void()> fire) {
    const int id = nextID_++;
    timers_.emplace(id, Timer{clock_.now() + delay, interval, std::move(fire)});
    return std::make_unique<TimerToken>(*this, id);
  }

  ManualClock& clock_;
  std::map<int, Timer> timers_;
  std::deque<std::function<void()>> posts_;
  std::deque<std::function<void()>> background_;
  std::shared_ptr<int> alive_ = std::make_shared<int>();
  int nextID_ = 1;
};

} // namespace tavrin::test
