#include "TavrinPlatform/Linux/Input/LockedModifiers.h"

#include <X11/XKBlib.h>
#include <X11/Xlib.h>

namespace tavrin {
namespace {

constexpr unsigned allModifiers = 0xFF;
constexpr unsigned long lockDetails = XkbModifierLockMask | XkbGroupLockMask;

} // namespace

void LockedModifiers::Close::operator()(_XDisplay* display) const {
  XCloseDisplay(display);
}

LockedModifiers::LockedModifiers() {
  int reason = 0;
  int error = 0;
  int major = XkbMajorVersion;
  int minor = XkbMinorVersion;
  display_.reset(XkbOpenDisplay(nullptr, &firstEvent_, &error, &major, &minor, &reason));
  // A keyboard that goes is no reason to end.
  XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });
}

LockedModifiers::~LockedModifiers() {
  restore();
}

int LockedModifiers::descriptor() const {
  return display_ ? XConnectionNumber(display_.get()) : -1;
}

void LockedModifiers::keep(unsigned device) {
  XkbStateRec state{};
  if (!display_ || kept_.contains(device) || XkbGetState(display_.get(), device, &state) != Success)
    return;
  kept_[device] = {state.locked_mods, state.locked_group};
  XkbSelectEventDetails(display_.get(), device, XkbStateNotify, lockDetails, lockDetails);
  XFlush(display_.get());
}

void LockedModifiers::restore() {
  while (display_ && XPending(display_.get()) > 0) {
    XkbEvent event{};
    XNextEvent(display_.get(), &event.core);
    if (event.type == firstEvent_ && event.any.xkb_type == XkbStateNotify)
      setBack(static_cast<unsigned>(event.state.device),
              {event.state.locked_mods, static_cast<unsigned>(event.state.locked_group)});
  }
}

void LockedModifiers::setBack(unsigned device, const Setting& found) {
  const auto kept = kept_.find(device);
  if (kept == kept_.end() || kept->second == found)
    return;
  XkbLockModifiers(display_.get(), device, allModifiers, kept->second.modifiers);
  XkbLockGroup(display_.get(), device, kept->second.layout);
  XFlush(display_.get());
}

} // namespace tavrin
