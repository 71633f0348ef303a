#include "TavrinPlatform/Qt/QtRunLoop.h"

#include <QBasicTimer>
#include <QCoreApplication>
#include <QTimerEvent>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <condition_variable>
#include <deque>
#include <mutex>

namespace tavrin {

namespace {

constexpr std::size_t threadCount = 2;
constexpr std::chrono::seconds idleThreadLifetime{5};
/// The toolkit counts milliseconds in an int; longer waits are taken in pieces.
constexpr double longestWait = 1'000'000'000;
constexpr double longestSharedInterval = 2'000;

class TimerToken final : public Token, public QObject {
public:
  TimerToken(double milliseconds, bool repeats, std::function<void()> fire)
      : fire_(std::make_shared<std::function<void()>>(std::move(fire))), repeats_(repeats),
        left_(milliseconds), interval_(milliseconds) {
    arm();
  }

protected:
  void timerEvent(QTimerEvent*) override {
    if (left_ > 0) {
      arm();
      return;
    }
    // The callee may drop this token.
    const auto fire = fire_;
    if (repeats_ && interval_ > longestWait) {
      left_ = interval_;
      arm();
    } else if (!repeats_) {
      timer_.stop();
    }
    (*fire)();
  }

private:
  void arm() {
    const double piece = std::min(left_, longestWait);
    left_ -= piece;
    const bool isShared = repeats_ && interval_ <= longestSharedInterval;
    timer_.start(static_cast<int>(std::lround(piece)),
                 isShared ? Qt::CoarseTimer : Qt::PreciseTimer, this);
  }

  std::shared_ptr<std::function<void()>> fire_;
  QBasicTimer timer_;
  bool repeats_;
  double left_;
  double interval_;
};

/// The pieces of one queue. Outlives the queue while a piece runs.
class PoolQueue final : public SerialQueue {
public:
  /// `hasEnded` outlives the queue.
  PoolQueue(ThreadPool& pool, const bool& hasEnded)
      : pool_(pool), hasEnded_(hasEnded), state_(std::make_shared<State>()) {}
  ~PoolQueue() override {
    std::unique_lock lock(state_->mutex);
    state_->waiting.clear();
    state_->idle.wait(lock, [&] { return !state_->isRunning; });
  }

  void run(std::function<void()> work) override {
    if (hasEnded_)
      return;
    const std::lock_guard lock(state_->mutex);
    state_->waiting.push_back(std::move(work));
    if (state_->isRunning)
      return;
    state_->isRunning = true;
    pool_.start([state = state_] { state->drain(); });
  }

private:
  struct State {
    std::mutex mutex;
    std::condition_variable idle;
    std::deque<std::function<void()>> waiting;
    bool isRunning = false;

    void drain() {
      std::unique_lock lock(mutex);
      while (!waiting.empty()) {
        {
          const auto work = std::move(waiting.front());
          waiting.pop_front();
          lock.unlock();
          work();
        }
        lock.lock();
      }
      isRunning = false;
      idle.notify_all();
    }
  };

  ThreadPool& pool_;
  const bool& hasEnded_;
  std::shared_ptr<State> state_;
};

double milliseconds(double seconds) {
  return std::isfinite(seconds) ? std::max(seconds * 1000, 0.0) : longestWait;
}

} // namespace

/// What was posted and not yet called. Between the threads stands a lock that tools can see; the
/// toolkit's event only says that there is something.
class QtRunLoop::Postbox final : public QObject {
public:
  void post(std::function<void()> work) {
    {
      const std::lock_guard lock(mutex_);
      posts_.push_back(std::move(work));
    }
    QCoreApplication::postEvent(this, new QEvent(QEvent::User));
  }

protected:
  /// One post for each event: what the loop has to do besides comes between them.
  void customEvent(QEvent*) override {
    std::unique_lock lock(mutex_);
    const auto work = std::move(posts_.front());
    posts_.pop_front();
    lock.unlock();
    work();
  }

private:
  std::mutex mutex_;
  std::deque<std::function<void()>> posts_;
};

QtRunLoop::QtRunLoop() : postbox_(std::make_unique<Postbox>()) {}

QtRunLoop::~QtRunLoop() {
  endWork();
}

void QtRunLoop::endWork() {
  hasEnded_ = true;
  if (pool_)
    pool_->finish();
}

TokenPtr QtRunLoop::repeat(double interval, std::function<void()> fire) {
  return std::make_unique<TimerToken>(std::max(milliseconds(interval), 1.0), true, std::move(fire));
}

TokenPtr QtRunLoop::after(double delay, std::function<void()> fire) {
  return std::make_unique<TimerToken>(milliseconds(delay), false, std::move(fire));
}

void QtRunLoop::post(std::function<void()> work) {
  postbox_->post(std::move(work));
}

void QtRunLoop::background(std::function<void()> work, std::weak_ptr<void> owner,
                           std::function<void()> done) {
  if (hasEnded_)
    return;
  pool().start(
      [this, work = std::move(work), owner = std::move(owner), done = std::move(done)]() mutable {
        work();
        post([owner = std::move(owner), done = std::move(done)] {
          if (const auto alive = owner.lock())
            done();
        });
      });
}

std::unique_ptr<SerialQueue> QtRunLoop::makeSerialQueue() {
  return std::make_unique<PoolQueue>(pool(), hasEnded_);
}

ThreadPool& QtRunLoop::pool() {
  if (!pool_)
    pool_.emplace(threadCount, idleThreadLifetime);
  return *pool_;
}

Date SystemClock::now() const {
  const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
  return Date::fromUnixSeconds(std::chrono::duration<double>(sinceEpoch).count());
}

} // namespace tavrin
