#pragma once

#include "TavrinPlatform/RunLoop.h"

#include <functional>

namespace tavrin {

/// Keeps the keyboard, and the pointer if wanted, from every program. A hold never outlives this
/// process, nor a process that stands still for more than a few seconds.
class InputBlocker {
public:
  enum class Outcome {
    holding,
    /// The user may not do this here.
    notPermitted,
    /// Another program has the keyboard for itself.
    secureInput,
    refused,
  };
  struct Callbacks {
    /// Told once, after `hold` has returned.
    std::function<void(Outcome)> started;
    /// What would have been pressed, as a Quartz event type number (see `lockedInput`).
    std::function<void(int eventType)> input;
    /// The hold is over though its token is there.
    std::function<void()> ended;
  };

  virtual ~InputBlocker() = default;
  virtual bool isPermitted() = 0;
  /// Shows the user where to permit it, where the system has such a place.
  virtual void requestPermission() = 0;
  /// A program is known to keep the keyboard for itself; false where that only shows by trying.
  virtual bool isSecureInputEnabled() = 0;
  virtual bool isScreenLocked() = 0;
  /// The screen was locked, or the computer is about to sleep. The first observer brings about
  /// that the state is asked for.
  [[nodiscard]] virtual TokenPtr observeEndOfNeed(std::function<void()> handler) = 0;
  /// Begins a hold that ends with the token, and by itself after `longest` seconds (0 for no such
  /// limit).
  [[nodiscard]] virtual TokenPtr hold(bool locksPointer, double longest, Callbacks callbacks) = 0;
};

} // namespace tavrin
