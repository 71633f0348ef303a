#include "TavrinPlatform/Linux/Dock/LinuxDockServices.h"

#include "TavrinPlatform/Linux/Dock/DisplayWatch.h"
#include "TavrinPlatform/Linux/Input/LinuxGlobalShortcuts.h"

#include <QCoreApplication>
#include <QSocketNotifier>
#include <csignal>
#include <sys/signalfd.h>
#include <unistd.h>

namespace tavrin {

GlobalShortcuts& LinuxDockServices::globalShortcuts() {
  if (!shortcuts_) {
    eventLoop_();
    shortcuts_ = std::make_unique<LinuxGlobalShortcuts>(
        bus_(), "dev.quellby.Tavrin", !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"));
  }
  return *shortcuts_;
}

LogSink& LinuxDockServices::log() {
  if (!log_)
    log_ = std::make_unique<LinuxSystemLog>();
  return *log_;
}

void LinuxDockServices::runUntilStopped(const std::function<void()>& started) {
  eventLoop_();
  sigset_t stops;
  sigemptyset(&stops);
  for (const int number : {SIGINT, SIGTERM, SIGHUP})
    sigaddset(&stops, number);
  // Threads take over the mask of the one that starts them: none of them is to take the signal.
  pthread_sigmask(SIG_BLOCK, &stops, nullptr);
  const int descriptor = signalfd(-1, &stops, SFD_CLOEXEC | SFD_NONBLOCK);
  {
    QSocketNotifier notifier(descriptor, QSocketNotifier::Read);
    QObject::connect(&notifier, &QSocketNotifier::activated, [descriptor] {
      signalfd_siginfo taken{};
      if (::read(descriptor, &taken, sizeof taken) > 0)
        QCoreApplication::quit();
    });
    // A session that ends takes its display with it, though the user's bus may outlive both.
    const DisplayWatch display(&QCoreApplication::quit);
    started();
    QCoreApplication::exec();
  }
  ::close(descriptor);
  pthread_sigmask(SIG_UNBLOCK, &stops, nullptr);
}

} // namespace tavrin
