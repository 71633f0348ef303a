#pragma once

#include <deque>
#include <functional>
#include <gio/gio.h>
#include <mutex>
#include <thread>

namespace tavrin {

/// A thread with an event loop of GLib's. What runs on it may wait for the calendar service; the
/// service's signals arrive on it.
class CalendarThread {
public:
  CalendarThread();
  /// Cancels what waits, runs `last` on the thread and ends it.
  void finish(std::function<void()> last);
  ~CalendarThread();
  CalendarThread(const CalendarThread&) = delete;
  CalendarThread& operator=(const CalendarThread&) = delete;

  /// In the order given. From any thread.
  void run(std::function<void()> work);
  /// For all calls that wait.
  GCancellable* cancellable() const { return cancellable_; }

private:
  void runNext();

  /// What `run` was given passes through a queue of its own, not through the loop's sources: their
  /// locks are GLib's, which the thread sanitizer does not know.
  std::mutex lock_;
  std::deque<std::function<void()>> waiting_;
  GMainContext* context_;
  GMainLoop* loop_;
  GCancellable* cancellable_;
  std::thread thread_;
};

} // namespace tavrin
