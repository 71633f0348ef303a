#pragma once

#include <csignal>
#include <functional>
#include <mutex>
#include <sys/eventfd.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

namespace tavrin {

/// A thread of a pasteboard's own, which waits on descriptors and takes orders of the main thread.
class PasteboardThread {
public:
  PasteboardThread() : wake_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}
  ~PasteboardThread() { ::close(wake_); }
  PasteboardThread(const PasteboardThread&) = delete;
  PasteboardThread& operator=(const PasteboardThread&) = delete;

  void start(std::function<void()> run) {
    // Signals are the main thread's.
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    thread_ = std::thread(std::move(run));
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
  }
  void join() {
    if (thread_.joinable())
      thread_.join();
  }
  /// Has the thread do it, when it obeys next.
  void order(std::function<void()> work) {
    {
      const std::lock_guard lock(mutex_);
      orders_.push_back(std::move(work));
    }
    eventfd_write(wake_, 1);
  }

  // For the thread itself.
  /// Readable while there are orders.
  int wakeDescriptor() const { return wake_; }
  void obey() {
    eventfd_t ignored = 0;
    eventfd_read(wake_, &ignored);
    std::vector<std::function<void()>> orders;
    {
      const std::lock_guard lock(mutex_);
      orders.swap(orders_);
    }
    for (const auto& work : orders)
      work();
  }

private:
  int wake_;
  std::mutex mutex_;
  std::vector<std::function<void()>> orders_;
  std::thread thread_;
};

} // namespace tavrin
