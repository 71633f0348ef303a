#include "TavrinWidgetsUI/KeyboardLock/KeyboardLock.h"

#include "TavrinCore/Text/ComputerWords.h"
#include "TavrinCore/Text/Texts.h"

#include <algorithm>

namespace tavrin {
namespace {

constexpr std::string_view notPermitted =
    marked("Tavrin needs the Accessibility permission to hold the keyboard.");
constexpr std::string_view secureInput = marked(
    "A password field has the keyboard, and {macOS} lets nothing hold it then. Leave the field and "
    "lock again.");
constexpr std::string_view screenLocked =
    marked("The screen is locked, so the keyboard stays free.");
constexpr std::string_view refused = marked("{macOS} refused the lock. Try again in a moment.");
constexpr std::string_view holdLost =
    marked("The lock ended because the keyboard could not be held any longer.");
constexpr double minute = 60;
/// The blocker's own limit is for the case that nobody counts here any more.
constexpr double limitMargin = 2;

double longest(const KeyboardLockSettings& settings) {
  return settings.autoUnlockMinutes < 1
             ? 0
             : std::min(settings.autoUnlockMinutes, KeyboardLock::longestMinutes) * minute;
}

} // namespace

KeyboardLock::KeyboardLock(const Services& services, const KeyboardLockSettings& settings)
    : services_(services), settings_(settings) {
  // Asked for early, so that it is known by the time of the lock.
  endOfNeed_ = services_.blocker.observeEndOfNeed([this] {
    if (isLocked() || isLocking())
      unlock();
  });
}

KeyboardLock::~KeyboardLock() = default;

void KeyboardLock::setSettings(const KeyboardLockSettings& settings) {
  if (isLocked() || isLocking())
    nextSettings_ = settings;
  else
    settings_ = settings;
}

void KeyboardLock::lock() {
  if (isLocked() || isLocking())
    return;
  trouble_.clear();
  InputBlocker& blocker = services_.blocker;
  if (!blocker.isPermitted()) {
    blocker.requestPermission();
    return refuse(notPermitted);
  }
  if (blocker.isSecureInputEnabled())
    return refuse(secureInput);
  if (blocker.isScreenLocked())
    return refuse(screenLocked);
  const double limit = longest(settings_);
  blocker_ = blocker.hold(settings_.locksPointer, limit > 0 ? limit + limitMargin : 0,
                          {[this](InputBlocker::Outcome outcome) { started(outcome); },
                           [this](int eventType) { handle(eventType); }, [this] { lost(); }});
  changed();
}

void KeyboardLock::refuse(std::string_view reason) {
  trouble_ = localSentence(translation(reason));
  changed();
}

void KeyboardLock::lost() {
  trouble_ = translation(holdLost);
  unlock();
}

void KeyboardLock::started(InputBlocker::Outcome outcome) {
  using Outcome = InputBlocker::Outcome;
  if (!isLocking())
    return;
  if (outcome != Outcome::holding) {
    blocker_.reset();
    if (nextSettings_)
      settings_ = *std::exchange(nextSettings_, std::nullopt);
    return refuse(outcome == Outcome::notPermitted  ? notPermitted
                  : outcome == Outcome::secureInput ? secureInput
                                                    : refused);
  }
  const Date now = services_.clock.now();
  const double limit = longest(settings_);
  lockedSince_ = now;
  unlocksAt_ = limit > 0 ? std::optional(now + limit) : std::nullopt;
  hold_ = {static_cast<double>(holdSeconds()), std::nullopt};
  swallowed_ = {};
  startCheck();
  if (settings_.playsSound)
    services_.sounds.play("Tink");
  changed();
}

bool KeyboardLock::handle(int eventType) {
  if (!isLocked())
    return false;
  const LockedInput input = lockedInput(eventType);
  if (settings_.locksPointer && input == LockedInput::buttonDown && !hold_.began) {
    hold_.press(services_.clock.now());
    startCheck();
    changed();
  } else if (settings_.locksPointer && input == LockedInput::buttonUp && hold_.began) {
    // A click may be held to its end between two looks.
    if (hold_.isComplete(services_.clock.now())) {
      unlock();
      return true;
    }
    hold_.release();
    startCheck();
    changed();
  }
  if (!isSwallowed(input, settings_.locksPointer))
    return false;
  ++(input == LockedInput::key ? swallowed_.keys : swallowed_.pointer);
  return true;
}

void KeyboardLock::startCheck() {
  checkTimer_ =
      services_.runLoop.repeat(hold_.began ? holdPeriod : checkPeriod, [this] { check(); });
}

void KeyboardLock::check() {
  const Date now = services_.clock.now();
  const bool isOver = unlocksAt_ && now >= *unlocksAt_;
  // A clock set back must not make the lock longer.
  const bool isImpossible = lockedSince_ && now < *lockedSince_;
  if (isOver || isImpossible || hold_.isComplete(now) || services_.blocker.isSecureInputEnabled() ||
      services_.blocker.isScreenLocked())
    unlock();
  else
    changed();
}

void KeyboardLock::unlock() {
  const bool differs = isLocked() || isLocking();
  lockedSince_.reset();
  unlocksAt_.reset();
  hold_.release();
  if (nextSettings_)
    settings_ = *std::exchange(nextSettings_, std::nullopt);
  // Last: unlock may be called by one of these.
  const TokenPtr timer = std::move(checkTimer_);
  const TokenPtr blocker = std::move(blocker_);
  if (differs)
    changed();
}

void KeyboardLock::changed() const {
  if (onChange)
    onChange();
}

} // namespace tavrin
