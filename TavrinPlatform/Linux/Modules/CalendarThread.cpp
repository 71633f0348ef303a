#include "TavrinPlatform/Linux/Modules/CalendarThread.h"

namespace tavrin {

CalendarThread::CalendarThread()
    : context_(g_main_context_new()), loop_(g_main_loop_new(context_, FALSE)),
      cancellable_(g_cancellable_new()), thread_([this] {
        g_main_context_push_thread_default(context_);
        g_main_loop_run(loop_);
        g_main_context_pop_thread_default(context_);
      }) {}

void CalendarThread::run(std::function<void()> work) {
  {
    const std::lock_guard guard(lock_);
    waiting_.push_back(std::move(work));
  }
  GSource* source = g_idle_source_new();
  g_source_set_priority(source, G_PRIORITY_DEFAULT);
  g_source_set_callback(
      source,
      [](gpointer self) -> gboolean {
        static_cast<CalendarThread*>(self)->runNext();
        return G_SOURCE_REMOVE;
      },
      this, nullptr);
  g_source_attach(source, context_);
  g_source_unref(source);
}

void CalendarThread::runNext() {
  std::function<void()> next;
  {
    const std::lock_guard guard(lock_);
    next = std::move(waiting_.front());
    waiting_.pop_front();
  }
  next();
}

void CalendarThread::finish(std::function<void()> last) {
  if (!thread_.joinable())
    return;
  g_cancellable_cancel(cancellable_);
  run([this, last = std::move(last)] {
    last();
    g_main_loop_quit(loop_);
  });
  thread_.join();
}

CalendarThread::~CalendarThread() {
  finish([] {});
  g_object_unref(cancellable_);
  g_main_loop_unref(loop_);
  g_main_context_unref(context_);
}

} // namespace tavrin
