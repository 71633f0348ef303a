#pragma once

#include "TavrinCore/Kinds/KeyboardLock/KeyboardLockSettings.h"
#include "TavrinCore/Kinds/KeyboardLock/LockedInput.h"
#include "TavrinPlatform/Clock.h"
#include "TavrinPlatform/InputBlocker.h"
#include "TavrinPlatform/SoundPlayer.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <string>

namespace tavrin {

/// Holds the keyboard, and the pointer if chosen, until a click is held, the time is over, or
/// something else needs the keyboard.
class KeyboardLock {
public:
  struct Services {
    Clock& clock;
    RunLoop& runLoop;
    InputBlocker& blocker;
    SoundPlayer& sounds;
  };
  struct Swallowed {
    int keys = 0;
    int pointer = 0;
    bool operator==(const Swallowed&) const = default;
  };
  static constexpr int longestMinutes = 30;
  /// Seconds between two looks while locked, and while a click is held.
  static constexpr double checkPeriod = 0.5;
  static constexpr double holdPeriod = 0.05;

  KeyboardLock(const Services& services, const KeyboardLockSettings& settings);
  ~KeyboardLock();

  /// Locks once the system agrees; else `trouble` says why not.
  void lock();
  void unlock();

  bool isLocked() const { return lockedSince_.has_value(); }
  /// Asked for and not answered yet.
  bool isLocking() const { return blocker_ != nullptr && !isLocked(); }
  std::optional<Date> lockedSince() const { return lockedSince_; }
  /// None where it does not unlock by itself.
  std::optional<Date> unlocksAt() const { return unlocksAt_; }
  /// What the lock that is on, or the next one, goes by.
  const KeyboardLockSettings& settings() const { return settings_; }
  /// How long a click is held to unlock: never so short that it could not be.
  int holdSeconds() const { return std::max(settings_.holdSeconds, 1); }
  /// New settings count from the next lock on.
  void setSettings(const KeyboardLockSettings& settings);
  const UnlockHold& hold() const { return hold_; }
  const Swallowed& swallowed() const { return swallowed_; }
  /// Why the last lock was refused, or ended before its time; else empty.
  const std::string& trouble() const { return trouble_; }
  Date now() const { return services_.clock.now(); }

  /// The state, the time left or the hold's progress is another one.
  std::function<void()> onChange;

private:
  void refuse(std::string_view reason);
  void started(InputBlocker::Outcome outcome);
  /// The hold is over before its time.
  void lost();
  /// One input event; whether it is swallowed.
  bool handle(int eventType);
  void check();
  void startCheck();
  void changed() const;

  Services services_;
  KeyboardLockSettings settings_;
  std::optional<KeyboardLockSettings> nextSettings_;
  UnlockHold hold_;
  Swallowed swallowed_;
  std::optional<Date> lockedSince_;
  std::optional<Date> unlocksAt_;
  std::string trouble_;
  TokenPtr blocker_;
  TokenPtr endOfNeed_;
  TokenPtr checkTimer_;
};

} // namespace tavrin
