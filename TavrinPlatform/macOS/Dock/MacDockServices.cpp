#include "TavrinPlatform/macOS/Dock/MacDockServices.h"

#include "TavrinPlatform/Files/Descriptor.h"
#include "TavrinPlatform/macOS/Dock/MacFocusStatus.h"
#include "TavrinPlatform/macOS/Input/MacGlobalShortcuts.h"

#include <QCoreApplication>
#include <QSocketNotifier>
#include <csignal>

namespace tavrin {
namespace {

/// The end that a signal's handler writes to: it may do little else.
volatile std::sig_atomic_t wakingEnd = -1;

void wake(int) {
  const char byte = 0;
  [[maybe_unused]] const ssize_t count = ::write(wakingEnd, &byte, 1);
}

} // namespace

FocusStatusProvider& MacDockServices::focusStatus() {
  if (!focusStatus_)
    focusStatus_ = makeMacFocusStatus();
  return *focusStatus_;
}

GlobalShortcuts& MacDockServices::globalShortcuts() {
  if (!shortcuts_) {
    eventLoop_();
    shortcuts_ = makeMacGlobalShortcuts();
  }
  return *shortcuts_;
}

void MacDockServices::runUntilStopped(const std::function<void()>& started) {
  eventLoop_();
  const Pipe pipe = Pipe::make();
  wakingEnd = pipe.writing.number();
  const int stops[] = {SIGINT, SIGTERM, SIGHUP};
  for (const int number : stops)
    std::signal(number, wake);
  {
    QSocketNotifier notifier(pipe.reading.number(), QSocketNotifier::Read);
    QObject::connect(&notifier, &QSocketNotifier::activated, [&notifier] {
      notifier.setEnabled(false);
      QCoreApplication::quit();
    });
    started();
    QCoreApplication::exec();
  }
  for (const int number : stops)
    std::signal(number, SIG_DFL);
  wakingEnd = -1;
}

} // namespace tavrin
