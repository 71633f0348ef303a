#include "TavrinPlatform/macOS/Input/MacInputBlocker.h"

#include "TavrinCore/Kinds/KeyboardLock/LockedInput.h"
#include "TavrinPlatform/POSIX/HandlerList.h"
#include "TavrinPlatform/macOS/Base/MacObservation.h"
#include "TavrinPlatform/macOS/Input/EventTap.h"

#import <AppKit/AppKit.h>
#import <Carbon/Carbon.h>

#include <optional>
#include <utility>

namespace tavrin {
namespace {

using Outcome = InputBlocker::Outcome;

/// Seconds between looks at whether the hold is still right.
constexpr double checkInterval = 0.5;
constexpr const char* screenLocked = "com.apple.screenIsLocked";

bool isTrue(CFTypeRef value) {
  if (value == nullptr)
    return false;
  if (CFGetTypeID(value) == CFBooleanGetTypeID())
    return CFBooleanGetValue(static_cast<CFBooleanRef>(value));
  int number = 0;
  return CFGetTypeID(value) == CFNumberGetTypeID() &&
         CFNumberGetValue(static_cast<CFNumberRef>(value), kCFNumberIntType, &number) &&
         number != 0;
}

bool isSessionLocked() {
  // None outside a desktop's session.
  CFDictionaryRef session = CGSessionCopyCurrentDictionary();
  if (session == nullptr)
    return false;
  const bool isLocked = isTrue(CFDictionaryGetValue(session, CFSTR("CGSSessionScreenIsLocked")));
  CFRelease(session);
  return isLocked;
}

/// What ends a hold may be called from inside of the tap, which then stays until it has returned.
class Hold : public std::enable_shared_from_this<Hold> {
public:
  Hold(RunLoop& runLoop, bool locksPointer, InputBlocker::Callbacks callbacks)
      : runLoop_(runLoop), locksPointer_(locksPointer), callbacks_(std::move(callbacks)) {}

  Outcome begin(double longest) {
    if (!AXIsProcessTrusted())
      return Outcome::notPermitted;
    if (IsSecureEventInputEnabled())
      return Outcome::secureInput;
    if (isSessionLocked())
      return Outcome::refused;
    // The tap is this object's, so it calls nobody who has gone.
    tap_.emplace([this](int type) { return swallows(type); }, [this] { revive(); });
    if (!tap_->isOpen()) {
      tap_.reset();
      return Outcome::refused;
    }
    check_ = runLoop_.repeat(checkInterval, [this] { check(); });
    if (longest > 0)
      end_ = runLoop_.after(longest, [this] { end(); });
    return Outcome::holding;
  }

  void tellStarted(Outcome outcome) {
    if (const auto started = callbacks_.started)
      started(outcome);
  }
  void letGo() {
    check_.reset();
    end_.reset();
    tap_.reset();
    callbacks_ = {};
  }

private:
  bool swallows(int type) {
    const auto self = shared_from_this();
    if (!isSwallowed(lockedInput(type), locksPointer_))
      return false;
    if (const auto input = callbacks_.input)
      input(type);
    return true;
  }

  /// A permission that was taken away shows as a tap that the system keeps switching off.
  void revive() {
    const auto self = shared_from_this();
    if (!AXIsProcessTrusted())
      end();
    else if (tap_)
      tap_->enable();
  }

  void check() {
    const auto self = shared_from_this();
    if (IsSecureEventInputEnabled() || isSessionLocked())
      end();
    else if (tap_ && !tap_->isEnabled())
      revive();
  }

  void end() {
    const auto self = shared_from_this();
    const auto ended = callbacks_.ended;
    letGo();
    if (ended)
      ended();
  }

  RunLoop& runLoop_;
  bool locksPointer_;
  InputBlocker::Callbacks callbacks_;
  std::optional<EventTap> tap_;
  TokenPtr check_;
  TokenPtr end_;
};

class HoldToken final : public Token {
public:
  HoldToken(RunLoop& runLoop, bool locksPointer, double longest, InputBlocker::Callbacks callbacks)
      : hold_(std::make_shared<Hold>(runLoop, locksPointer, std::move(callbacks))) {
    const Outcome outcome = hold_->begin(longest);
    runLoop.post([weak = std::weak_ptr(hold_), outcome] {
      if (const auto hold = weak.lock())
        hold->tellStarted(outcome);
    });
  }
  ~HoldToken() override { hold_->letGo(); }

private:
  std::shared_ptr<Hold> hold_;
};

class MacInputBlocker final : public InputBlocker {
public:
  MacInputBlocker(RunLoop& runLoop, DistributedNotificationCenter& notices)
      : runLoop_(runLoop), notices_(notices) {}

  bool isPermitted() override { return AXIsProcessTrusted(); }
  void requestPermission() override {
    const void* key = kAXTrustedCheckOptionPrompt;
    const void* value = kCFBooleanTrue;
    CFDictionaryRef options =
        CFDictionaryCreate(kCFAllocatorDefault, &key, &value, 1, &kCFTypeDictionaryKeyCallBacks,
                           &kCFTypeDictionaryValueCallBacks);
    AXIsProcessTrustedWithOptions(options);
    if (options != nullptr)
      CFRelease(options);
  }
  bool isSecureInputEnabled() override { return IsSecureEventInputEnabled(); }
  bool isScreenLocked() override { return isSessionLocked(); }

  TokenPtr observeEndOfNeed(std::function<void()> handler) override {
    if (!lock_) {
      lock_ = notices_.observe(screenLocked, [this](const auto&) { endOfNeed_.call(); });
      sleep_.emplace(NSWorkspace.sharedWorkspace.notificationCenter,
                     NSWorkspaceWillSleepNotification, [this] { endOfNeed_.call(); });
    }
    return endOfNeed_.add(std::move(handler));
  }

  TokenPtr hold(bool locksPointer, double longest, Callbacks callbacks) override {
    return std::make_unique<HoldToken>(runLoop_, locksPointer, longest, std::move(callbacks));
  }

private:
  RunLoop& runLoop_;
  DistributedNotificationCenter& notices_;
  HandlerList endOfNeed_;
  TokenPtr lock_;
  std::optional<MacObservation> sleep_;
};

} // namespace

std::unique_ptr<InputBlocker> makeMacInputBlocker(RunLoop& runLoop,
                                                  DistributedNotificationCenter& notices) {
  return std::make_unique<MacInputBlocker>(runLoop, notices);
}

} // namespace tavrin
