#include "TavrinPlatform/Linux/Input/LinuxInputBlocker.h"

#include "TavrinCore/Base/Lifetime.h"
#include "TavrinPlatform/Linux/Base/BusProperties.h"
#include "TavrinPlatform/Linux/Input/InputGuard.h"

#include <QProcess>
#include <array>
#include <chrono>
#include <string_view>
#include <unistd.h>

namespace tavrin {
namespace {

using Outcome = InputBlocker::Outcome;
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

/// One guard. Its end is told once, by `started` or by `ended`, and never after it is gone.
class GuardedHold final : public Token {
public:
  GuardedHold(RunLoop& runLoop, bool locksPointer, double longest,
              InputBlocker::Callbacks callbacks)
      : callbacks_(std::move(callbacks)) {
    guard_->setStandardErrorFile(QProcess::nullDevice());
    QObject::connect(guard_.get(), &QProcess::readyReadStandardOutput, guard_.get(),
                     [this] { read(); });
    QObject::connect(guard_.get(), &QProcess::finished, guard_.get(),
                     [this] { end(Outcome::refused); });
    QObject::connect(guard_.get(), &QProcess::errorOccurred, guard_.get(),
                     [this](QProcess::ProcessError e) {
                       if (e == QProcess::FailedToStart)
                         end(Outcome::refused);
                     });
    heard_ = std::chrono::steady_clock::now();
    guard_->start(QStringLiteral("/proc/self/exe"),
                  {QString::fromLatin1(guard::argument),
                   locksPointer ? QStringLiteral("all") : QStringLiteral("keyboard"),
                   QString::number(longest), QString::number(::getpid())},
                  QIODevice::ReadWrite | QIODevice::Unbuffered);
    beat_ = runLoop.repeat(guard::beat, [this] { beat(); });
  }

private:
  /// The guard may be just what calls: its object goes later, what it holds goes now.
  struct LetGo {
    void operator()(QProcess* process) const {
      process->disconnect();
      QObject::connect(process, &QProcess::finished, process, &QObject::deleteLater);
      process->kill();
      if (process->state() == QProcess::NotRunning)
        process->deleteLater();
    }
  };

  void beat() {
    guard_->write(&guard::alive, 1);
    const std::chrono::duration<double> silence = std::chrono::steady_clock::now() - heard_;
    if (silence.count() > guard::silence)
      guard_->kill();
  }

  void read() {
    heard_ = std::chrono::steady_clock::now();
    // A callback may destroy this.
    const auto alive = alive_.watch();
    for (const char byte : guard_->readAllStandardOutput()) {
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
      return started(Outcome::holding);
    }
    end(byte == guard::busy           ? Outcome::secureInput
        : byte == guard::notPermitted ? Outcome::notPermitted
                                      : Outcome::refused);
  }

  void end(Outcome outcome) {
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
  std::unique_ptr<QProcess, LetGo> guard_{new QProcess};
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
