#pragma once

#include "TavrinCore/Dock/PropertyList.h"

#include <CoreFoundation/CoreFoundation.h>

#include <map>
#include <string>
#include <vector>

/// Core Foundation's objects as the adapters need them, counted. Each test ends with as many as it
/// began with.
namespace tavrin::fake {

/// Owned by the caller.
CFStringRef text(const std::string& text);
CFNumberRef number(double value);
CFTypeRef data(const std::string& bytes);
/// The containers keep the values, and take over the caller's references.
CFArrayRef array(std::vector<CFTypeRef> items);
CFDictionaryRef dictionary(std::map<std::string, CFTypeRef> entries);
CFTypeRef flag(bool value);

PropertyList listOf(CFTypeRef object);
CFTypeRef objectOf(const PropertyList& list);
std::string textOf(CFTypeRef object);
/// Null where there is none; the dictionary keeps it.
CFTypeRef entryOf(CFDictionaryRef dictionary, const std::string& key);

/// Objects that somebody still holds, constants aside.
int liveObjects();
/// What was let go of too often, or used afterwards; none is as it should be.
std::vector<std::string>& misuses();
/// Has the next making of an object of this type give null.
void failNext(CFTypeID type);

/// A constant of a framework.
CFStringRef constant(const char* text);

struct Source {
  CFRunLoopRef loop = nullptr;
  std::string mode;
  bool isInvalid = false;
};
CFRunLoopSourceRef makeSource();
Source& sourceOf(CFRunLoopSourceRef source);

} // namespace tavrin::fake
