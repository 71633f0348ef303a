#include "TavrinPlatform/Linux/LinuxCommandPlatform.h"

#include "TavrinPlatform/POSIX/ProgramPath.h"

#include <QEventLoop>
#include <QTimer>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <sys/wait.h>
#include <unistd.h>

namespace tavrin {
namespace {

constexpr const char* busVariable = "DBUS_SESSION_BUS_ADDRESS";
constexpr int commandNotFound = 127;

/// Signals of the keyboard belong to the program in the foreground while it runs.
class KeyboardSignalsIgnored {
public:
  KeyboardSignalsIgnored()
      : interrupt_(std::signal(SIGINT, SIG_IGN)), quit_(std::signal(SIGQUIT, SIG_IGN)) {}
  ~KeyboardSignalsIgnored() { restore(); }
  KeyboardSignalsIgnored(const KeyboardSignalsIgnored&) = delete;
  KeyboardSignalsIgnored& operator=(const KeyboardSignalsIgnored&) = delete;
  void restore() const {
    std::signal(SIGINT, interrupt_);
    std::signal(SIGQUIT, quit_);
  }

private:
  void (*interrupt_)(int);
  void (*quit_)(int);
};

bool isSet(const std::optional<std::string>& text) {
  return text && !text->empty();
}

} // namespace

LinuxCommandPlatform::LinuxCommandPlatform() : mainBundle_(program()) {}

void LinuxCommandPlatform::startEventLoop() {
  if (eventLoop_)
    return;
  static int count = 1;
  static char name[] = "tavrin";
  static char* arguments[] = {name, nullptr};
  eventLoop_ = std::make_unique<QCoreApplication>(count, arguments);
  runLoop_ = std::make_unique<QtRunLoop>();
}

void LinuxCommandPlatform::adoptStoredBusAddress() {
  std::error_code error;
  const auto runtimeFolder = fileManager_.environment("XDG_RUNTIME_DIR");
  if (isSet(fileManager_.environment(busVariable)) ||
      (isSet(runtimeFolder) && std::filesystem::exists(*runtimeFolder + "/bus", error)))
    return;
  const auto chosen = fileManager_.environment("XDG_STATE_HOME");
  const auto state = isSet(chosen) && chosen->starts_with('/')
                         ? std::filesystem::path(*chosen)
                         : fileManager_.homeFolder() / ".local/state";
  std::string address;
  std::getline(std::ifstream(state / "tavrin/session-bus"), address);
  if (!address.empty())
    setenv(busVariable, address.c_str(), 1);
}

Bus* LinuxCommandPlatform::bus() {
  if (hasLookedForBus_)
    return bus_.get();
  hasLookedForBus_ = true;
  startEventLoop();
  adoptStoredBusAddress();
  bus_ = Bus::session();
  return bus_.get();
}

DistributedNotificationCenter& LinuxCommandPlatform::notifications() {
  if (!notifications_) {
    auto* connection = bus();
    notifications_ = std::make_unique<BusNotificationCenter>(connection, *runLoop_);
  }
  return *notifications_;
}

RunningApplications& LinuxCommandPlatform::applications() {
  if (!applications_)
    applications_ = std::make_unique<LinuxRunningApplications>(bus());
  return *applications_;
}

DockServices& LinuxCommandPlatform::dockServices() {
  if (!dockServices_)
    dockServices_ = std::make_unique<LinuxDockServices>(
        fileManager_.homeFolder(),
        [this]() -> RunLoop& {
          startEventLoop();
          return *runLoop_;
        },
        [this] { return bus(); });
  return *dockServices_;
}

std::filesystem::path LinuxCommandPlatform::program() {
  return programPath();
}

void LinuxCommandPlatform::wait(double seconds) {
  startEventLoop();
  QEventLoop moment;
  QTimer::singleShot(static_cast<int>(seconds * 1000), Qt::PreciseTimer, &moment,
                     &QEventLoop::quit);
  moment.exec();
}

void LinuxCommandPlatform::waitForEvent() {
  startEventLoop();
  QEventLoop().processEvents(QEventLoop::WaitForMoreEvents);
}

bool LinuxCommandPlatform::ownsTerminal() {
  return tcgetpgrp(STDIN_FILENO) == getpgrp();
}

int LinuxCommandPlatform::runInForeground(const std::vector<std::string>& words) {
  std::vector<std::string> copies = words;
  std::vector<char*> arguments;
  for (auto& word : copies)
    arguments.push_back(word.data());
  arguments.push_back(nullptr);
  const KeyboardSignalsIgnored guard;
  const pid_t child = fork();
  if (child == 0) {
    guard.restore();
    execvp(arguments.front(), arguments.data());
    _exit(commandNotFound);
  }
  int status = 0;
  while (child > 0 && waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  return child > 0 && WIFEXITED(status) ? WEXITSTATUS(status) : commandNotFound;
}

} // namespace tavrin
