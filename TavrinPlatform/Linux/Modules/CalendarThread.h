#pragma once

#include <functional>
#include <gio/gio.h>
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
  GMainContext* context_;
  GMainLoop* loop_;
  GCancellable* cancellable_;
  std::thread thread_;
};

} // namespace tavrin
