#include "TavrinPlatform/macOS/Devices/MacPowerSources.h"

#include "TavrinPlatform/macOS/Base/CFRef.h"

#include <IOKit/ps/IOPSKeys.h>
#include <IOKit/ps/IOPowerSources.h>

namespace tavrin {
namespace {

/// An entry of a description, which keeps it.
CFTypeRef entry(CFDictionaryRef description, const char* key) {
  const auto name = toCFText(key);
  return name ? CFDictionaryGetValue(description, name.get()) : nullptr;
}

PowerSource sourceFrom(CFDictionaryRef description) {
  const auto number = [&](const char* key) { return integerFrom(entry(description, key)); };
  PowerSource source;
  source.currentCapacity = number(kIOPSCurrentCapacityKey);
  source.maximumCapacity = number(kIOPSMaxCapacityKey);
  source.isOnACPower = textFrom(entry(description, kIOPSPowerSourceStateKey)) == kIOPSACPowerValue;
  source.isCharging = booleanFrom(entry(description, kIOPSIsChargingKey)).value_or(false);
  source.timeToFullCharge = number(kIOPSTimeToFullChargeKey);
  source.timeToEmpty = number(kIOPSTimeToEmptyKey);
  return source;
}

} // namespace

MacPowerSources::~MacPowerSources() {
  if (notices_ == nullptr)
    return;
  CFRunLoopSourceInvalidate(notices_);
  CFRelease(notices_);
}

std::vector<PowerSource> MacPowerSources::list() {
  std::vector<PowerSource> sources;
  const CFRef<CFTypeRef> snapshot(IOPSCopyPowerSourcesInfo());
  if (!snapshot)
    return sources;
  const CFRef<CFArrayRef> handles(IOPSCopyPowerSourcesList(snapshot.get()));
  const CFIndex count = handles ? CFArrayGetCount(handles.get()) : 0;
  for (CFIndex i = 0; i < count; ++i) {
    const CFTypeRef handle = CFArrayGetValueAtIndex(handles.get(), i);
    const CFDictionaryRef description =
        handle != nullptr ? IOPSGetPowerSourceDescription(snapshot.get(), handle) : nullptr;
    if (description != nullptr && CFGetTypeID(description) == CFDictionaryGetTypeID())
      sources.push_back(sourceFrom(description));
  }
  return sources;
}

TokenPtr MacPowerSources::observe(std::function<void()> handler) {
  if (notices_ == nullptr) {
    const auto told = [](void* self) { static_cast<MacPowerSources*>(self)->changes_.call(); };
    notices_ = IOPSNotificationCreateRunLoopSource(told, this);
    if (notices_ != nullptr)
      CFRunLoopAddSource(CFRunLoopGetMain(), notices_, kCFRunLoopCommonModes);
  }
  return changes_.add(std::move(handler));
}

} // namespace tavrin
