#include "TavrinPlatform/macOS/Input/EventTap.h"

#include <utility>

namespace tavrin {

EventTap::EventTap(Decide decide, Disabled disabled)
    : decide_(std::move(decide)), disabled_(std::move(disabled)),
      port_(CGEventTapCreate(kCGSessionEventTap, kCGHeadInsertEventTap, kCGEventTapOptionDefault,
                             kCGEventMaskForAllEvents, heard, this)) {
  if (port_ == nullptr)
    return;
  source_ = CFMachPortCreateRunLoopSource(kCFAllocatorDefault, port_, 0);
  if (source_ == nullptr)
    return;
  CFRunLoopAddSource(CFRunLoopGetMain(), source_, kCFRunLoopCommonModes);
  enable();
}

EventTap::~EventTap() {
  if (port_ == nullptr)
    return;
  CGEventTapEnable(port_, false);
  if (source_ != nullptr)
    CFRunLoopRemoveSource(CFRunLoopGetMain(), source_, kCFRunLoopCommonModes);
  // A tap that is only released keeps its place in the system's table.
  CFMachPortInvalidate(port_);
  if (source_ != nullptr)
    CFRelease(source_);
  CFRelease(port_);
}

bool EventTap::isEnabled() const {
  return CGEventTapIsEnabled(port_);
}

void EventTap::enable() {
  CGEventTapEnable(port_, true);
}

CGEventRef EventTap::heard(CGEventTapProxy, CGEventType type, CGEventRef event, void* context) {
  // Copies: the callee may end the tap.
  const auto& self = *static_cast<const EventTap*>(context);
  if (type == kCGEventTapDisabledByTimeout || type == kCGEventTapDisabledByUserInput) {
    const auto disabled = self.disabled_;
    disabled();
    return event;
  }
  const auto decide = self.decide_;
  return decide(static_cast<int>(type)) ? nullptr : event;
}

} // namespace tavrin
