#include "TavrinPlatform/Linux/Input/LinuxInputBlocker.h"

#include "TavrinCore/Base/Lifetime.h"
#include "TavrinPlatform/Files/Descriptor.h"
#include "TavrinPlatform/Linux/Base/BusProperties.h"
#include "TavrinPlatform/Linux/Input/InputGuard.h"
#include "TavrinPlatform/POSIX/Spawn.h"

#include <QSocketNotifier>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <string_view>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tavrin {
namespace {

using LockOutcome = InputBlocker::Outcome;
constexpr const char* login = "org.freedesktop.login1";
constexpr const char* loginPath = "/org/freedesktop/login1";
constexpr const char* managerInterface = "org.freedesktop.login1.Manager";
constexpr const char* sessionInterface = "org.freedesktop.login1.Session";
constexpr const char* propertiesInterface = "org.freedesktop.DBus.Properties";

/// Screen savers lock when they are active, as far as a desktop can tell.
constexpr std::array savers = {
    std::pair{"org.freedesktop.ScreenSaver", "/org/freedesktop/ScreenSaver"},
    std::pair{"org.gnome.ScreenSaver", "/org/gnome/ScreenSaver"},
    std::pair{"org.cinnamon.ScreenSaver", "/org/cinnamon/ScreenSaver"},
    std::pair{"org.mate.ScreenSaver", "/org/mate/ScreenSaver"},
    std::pair{"org.xfce.ScreenSaver", "/org/xfce/ScreenSaver"}};

/// The guard's process. What it holds goes with this.
class GuardProcess {
public:
  /// `read` is told each time that there is something to be read, and at the guard's end.
  bool start(const std::vector<std::string>& arguments, std::function<void()> read) {
    std::array<int, 2> ends{-1, -1};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0)
      return false;
    own_ = Descriptor(ends[0]);
    const Descriptor others(ends[1]);
    const Descriptor nothing(::open("/dev/null", O_RDWR | O_CLOEXEC));
    const pid_t child = spawn({.program = "/proc/self/exe",
                               .arguments = arguments,
                               .input = others.number(),
                               .output = others.number(),
                               .errors = nothing.number()});
    if (child < 0)
      return false;
    process_ = child;
    notifier_ = std::make_unique<QSocketNotifier>(own_.number(), QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                     [read = std::move(read)] { read(); });
    return true;
  }

  ~GuardProcess() {
    if (notifier_) {
      notifier_->setEnabled(false);
      // It may be what calls.
      notifier_.release()->deleteLater();
    }
    if (process_ == 0)
      return;
    kill();
    while (::waitpid(process_, nullptr, 0) < 0 && errno == EINTR) {
    }
  }

  GuardProcess() = default;
  GuardProcess(const GuardProcess&) = delete;
  GuardProcess& operator=(const GuardProcess&) = delete;

  /// No value once the guard has ended; nothing is told any more then.
  std::optional<std::string> read() {
    std::array<char, 256> bytes;
    ssize_t count = 0;
    do
      count = ::recv(own_.number(), bytes.data(), bytes.size(), MSG_DONTWAIT);
    while (count < 0 && errno == EINTR);
    if (count > 0)
      return std::string(bytes.data(), static_cast<std::size_t>(count));
    if (count < 0 && errno == EAGAIN)
      return std::string();
    notifier_->setEnabled(false);
    return std::nullopt;
  }

  /// A guard that is not there to read it is noticed otherwise.
  void write(char byte) const { ::send(own_.number(), &byte, 1, MSG_DONTWAIT | MSG_NOSIGNAL); }
  void kill() const { ::kill(process_, SIGKILL); }

private:
  Descriptor own_;
  std::unique_ptr<QSocketNotifier> notifier_;
  pid_t process_ = 0;
};

/// One guard. Its end is told once, by `started` or by `ended`, and never after it is gone.
class GuardedHold final : public Token {
public:
  GuardedHold(RunLoop& runLoop, bool locksPointer, double longest,
              InputBlocker::Callbacks callbacks)
      : callbacks_(std::move(callbacks)), heard_(std::chrono::steady_clock::now()) {
    const bool isStarted =
        guard_.start({guard::argument, locksPointer ? "all" : "keyboard",
                      QString::number(longest).toStdString(), std::to_string(::getpid())},
                     [this] { read(); });
    if (isStarted)
      beat_ = runLoop.repeat(guard::beat, [this] { beat(); });
    else
      runLoop.post([this, alive = alive_.watch()] {
        if (!alive.expired())
          end(LockOutcome::refused);
      });
  }

private:
  void beat() {
    guard_.write(guard::alive);
    const std::chrono::duration<double> silence = std::chrono::steady_clock::now() - heard_;
    if (silence.count() > guard::silence)
      guard_.kill();
  }

  void read() {
    heard_ = std::chrono::steady_clock::now();
    const auto bytes = guard_.read();
    if (!bytes)
      return end(LockOutcome::refused);
    // A callback may destroy this.
    const auto alive = alive_.watch();
    for (const char byte : *bytes) {
      take(byte);
      if (alive.expired())
        return;
    }
  }

  void take(char byte) {
    if (byte == guard::alive)
      return;
    // Copies: a callback may destroy this.
    if (isStarted_) {
      const auto input = callbacks_.input;
      return byte > 0 && byte < 64 ? input(byte) : void();
    }
    if (byte == guard::holding) {
      isStarted_ = true;
      const auto started = callbacks_.started;
      return started(LockOutcome::holding);
    }
    end(byte == guard::busy           ? LockOutcome::secureInput
        : byte == guard::notPermitted ? LockOutcome::notPermitted
                                      : LockOutcome::refused);
  }

  void end(LockOutcome outcome) {
    if (std::exchange(isEnded_, true))
      return;
    beat_.reset();
    const auto callbacks = callbacks_;
    if (isStarted_)
      callbacks.ended();
    else
      callbacks.started(outcome);
  }

  InputBlocker::Callbacks callbacks_;
  GuardProcess guard_;
  TokenPtr beat_;
  std::chrono::steady_clock::time_point heard_;
  Lifetime alive_;
  bool isStarted_ = false;
  bool isEnded_ = false;
};

} // namespace

LinuxInputBlocker::LinuxInputBlocker(RunLoop& runLoop, Bus* session, std::function<Bus*()> system)
    : runLoop_(runLoop), session_(session), system_(std::move(system)) {}

bool LinuxInputBlocker::isPermitted() {
  return inputGuardMeans() != InputGuardMeans::none;
}

bool LinuxInputBlocker::isScreenLocked() {
  watch();
  return !activeSavers_.empty() || sessionLocks_;
}

TokenPtr LinuxInputBlocker::observeEndOfNeed(std::function<void()> handler) {
  watch();
  return endOfNeed_.add(std::move(handler));
}

TokenPtr LinuxInputBlocker::hold(bool locksPointer, double longest, Callbacks callbacks) {
  return std::make_unique<GuardedHold>(runLoop_, locksPointer, longest, std::move(callbacks));
}

void LinuxInputBlocker::setSessionLocked(bool isLocked) {
  if (!std::exchange(sessionLocks_, isLocked) && isLocked)
    endOfNeed_.call();
}

/// A saver locks until it says otherwise, or leaves the bus: by then it can say nothing more.
void LinuxInputBlocker::setSaverActive(const Saver& saver, bool isActive) {
  if (!isActive) {
    activeSavers_.erase(saver);
    return;
  }
  const auto [entry, isNew] = activeSavers_.try_emplace(saver);
  if (!isNew)
    return;
  const std::string& owner = saver.second;
  entry->second = session_->match("type='signal',sender='org.freedesktop.DBus',"
                                  "interface='org.freedesktop.DBus',member='NameOwnerChanged',"
                                  "arg0='" +
                                      owner + "',arg2=''",
                                  [this, saver](sd_bus_message*) { forget(saver); });
  // It may have left before anything listened.
  BusMessage question = session_->method(busDaemon, "NameHasOwner");
  session_->call(question.append("s", owner.c_str()), [this, saver](sd_bus_message* reply, auto&) {
    int isThere = 0;
    if (reply != nullptr && sd_bus_message_read(reply, "b", &isThere) > 0 && isThere == 0)
      forget(saver);
  });
  endOfNeed_.call();
}

/// Later: the token of a match must not go while it calls.
void LinuxInputBlocker::forget(const Saver& saver) {
  runLoop_.post([this, saver, alive = alive_.watch()] {
    if (!alive.expired())
      activeSavers_.erase(saver);
  });
}

void LinuxInputBlocker::watch() {
  if (std::exchange(isWatching_, true))
    return;
  if (session_ != nullptr && session_->isOpen())
    watchScreenSavers();
  Bus* system = system_();
  if (system == nullptr)
    return;
  watches_.push_back(system->match(
      "type='signal',sender='org.freedesktop.login1',path='/org/freedesktop/login1',"
      "interface='org.freedesktop.login1.Manager',member='PrepareForSleep'",
      [this](sd_bus_message* message) {
        int isGoingToSleep = 0;
        if (sd_bus_message_read(message, "b", &isGoingToSleep) > 0 && isGoingToSleep != 0)
          endOfNeed_.call();
      }));
  BusMessage question = system->method({login, loginPath, managerInterface}, "GetSessionByPID");
  // 0 is the caller's own process.
  system->call(question.append("u", 0U), [this, system](sd_bus_message* reply, auto&) {
    const char* path = nullptr;
    if (reply == nullptr || sd_bus_message_read_basic(reply, 'o', &path) <= 0)
      return;
    sessionPath_ = path;
    watchSession(*system);
  });
}

void LinuxInputBlocker::watchScreenSavers() {
  for (const auto& [service, path] : savers) {
    const auto active = [this, name = service](sd_bus_message* message) {
      int isActive = 0;
      const char* sender = sd_bus_message_get_sender(message);
      if (sender != nullptr && sd_bus_message_read(message, "b", &isActive) > 0)
        setSaverActive({name, sender}, isActive != 0);
    };
    watches_.push_back(session_->match(
        std::string("type='signal',interface='") + service + "',member='ActiveChanged'", active));
    BusMessage question = session_->method({service, path, service}, "GetActive");
    if (question)
      sd_bus_message_set_auto_start(question.get(), 0);
    session_->call(question, [active](sd_bus_message* reply, auto&) {
      if (reply != nullptr)
        active(reply);
    });
  }
}

void LinuxInputBlocker::watchSession(Bus& system) {
  const auto at = "type='signal',sender='org.freedesktop.login1',path='" + sessionPath_ + "',";
  watches_.push_back(system.match(at + "interface='org.freedesktop.login1.Session',member='Lock'",
                                  [this](sd_bus_message*) { endOfNeed_.call(); }));
  const auto hint = [this](sd_bus_message* message) {
    BusProperties properties;
    properties.read(message);
    if (properties.has("LockedHint"))
      setSessionLocked(properties.flag("LockedHint"));
  };
  watches_.push_back(
      system.match(at + "interface='org.freedesktop.DBus.Properties',member='PropertiesChanged'",
                   [hint](sd_bus_message* message) {
                     if (textArgument(message) == sessionInterface)
                       hint(message);
                   }));
  BusMessage question = system.method({login, sessionPath_.c_str(), propertiesInterface}, "GetAll");
  system.call(question.append("s", sessionInterface), [hint](sd_bus_message* reply, auto&) {
    if (reply != nullptr)
      hint(reply);
  });
}

} // namespace tavrin
