#pragma once

#include <CoreGraphics/CoreGraphics.h>
#include <functional>

namespace tavrin {

/// All input of the session, asked before anybody else has it, while this lives. Main thread.
class EventTap {
public:
  /// Whether the event of this type number is to be kept from everybody.
  using Decide = std::function<bool(int eventType)>;
  /// The system has switched the tap off: it was slow, or the user made it so.
  using Disabled = std::function<void()>;

  EventTap(Decide decide, Disabled disabled);
  ~EventTap();
  EventTap(const EventTap&) = delete;
  EventTap& operator=(const EventTap&) = delete;

  /// False where the system gave none.
  bool isOpen() const { return source_ != nullptr; }
  bool isEnabled() const;
  void enable();

private:
  static CGEventRef heard(CGEventTapProxy proxy, CGEventType type, CGEventRef event, void* context);

  Decide decide_;
  Disabled disabled_;
  CFMachPortRef port_ = nullptr;
  CFRunLoopSourceRef source_ = nullptr;
};

} // namespace tavrin
