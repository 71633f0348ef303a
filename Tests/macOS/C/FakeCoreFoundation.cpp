#include "FakeCoreFoundation.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <set>

namespace {

using namespace tavrin;

enum Type : CFTypeID { anyType, textType, numberType, flagType, dataType, arrayType, dictionaryType, sourceType };

struct Object {
  CFTypeID type;
  int references = 1;
  bool isConstant = false;
  std::string text = {};
  double number = 0;
  std::vector<CFTypeRef> items = {};
  std::map<std::string, CFTypeRef> entries = {};
  fake::Source source = {};
};

std::set<const Object*>& live() {
  static std::set<const Object*> objects;
  return objects;
}

CFTypeID failing = anyType;

Object* object(CFTypeRef reference) {
  return static_cast<Object*>(const_cast<void*>(reference));
}

Object* make(CFTypeID type) {
  if (failing == type && type != anyType) {
    failing = anyType;
    return nullptr;
  }
  auto* made = new Object{type};
  live().insert(made);
  return made;
}

Object* used(CFTypeRef reference) {
  auto* found = object(reference);
  if (found == nullptr || (!found->isConstant && !live().contains(found)))
    fake::misuses().push_back("an object that is gone, or none, was used");
  return found;
}

template <class Reference> Reference as(Object* made) {
  return reinterpret_cast<Reference>(made);
}

} // namespace

namespace tavrin::fake {

std::vector<std::string>& misuses() {
  static std::vector<std::string> all;
  return all;
}
int liveObjects() { return static_cast<int>(live().size()); }
void failNext(CFTypeID type) { failing = type; }

CFStringRef text(const std::string& text) {
  auto* made = make(textType);
  if (made != nullptr)
    made->text = text;
  return as<CFStringRef>(made);
}
CFNumberRef number(double value) {
  auto* made = make(numberType);
  made->number = value;
  return as<CFNumberRef>(made);
}
CFTypeRef data(const std::string& bytes) {
  auto* made = make(dataType);
  if (made != nullptr)
    made->text = bytes;
  return made;
}
CFArrayRef array(std::vector<CFTypeRef> items) {
  auto* made = make(arrayType);
  made->items = std::move(items);
  return as<CFArrayRef>(made);
}
CFDictionaryRef dictionary(std::map<std::string, CFTypeRef> entries) {
  auto* made = make(dictionaryType);
  made->entries = std::move(entries);
  return as<CFDictionaryRef>(made);
}
CFTypeRef flag(bool value) {
  static Object yes{flagType, 1, true, {}, 1};
  static Object no{flagType, 1, true, {}, 0};
  return value ? &yes : &no;
}
CFStringRef constant(const char* text) { return as<CFStringRef>(new Object{textType, 1, true, text}); }

std::string textOf(CFTypeRef reference) { return used(reference)->text; }
CFTypeRef entryOf(CFDictionaryRef dictionary, const std::string& key) {
  const auto& entries = used(dictionary)->entries;
  const auto found = entries.find(key);
  return found == entries.end() ? nullptr : found->second;
}

PropertyList listOf(CFTypeRef reference) {
  const Object& value = *used(reference);
  switch (value.type) {
  case numberType:
    return std::floor(value.number) == value.number ? PropertyList(std::int64_t(value.number))
                                                    : PropertyList(value.number);
  case flagType: return value.number != 0;
  case dataType: return Data::fromText(value.text);
  case arrayType: {
    PropertyList::Array items;
    for (CFTypeRef item : value.items)
      items.push_back(listOf(item));
    return items;
  }
  case dictionaryType: {
    PropertyList::Dictionary entries;
    for (const auto& [key, item] : value.entries)
      entries.emplace(key, listOf(item));
    return entries;
  }
  default: return value.text;
  }
}

CFTypeRef objectOf(const PropertyList& list) {
  if (const auto* boolean = list.boolean())
    return flag(*boolean);
  if (const auto* whole = list.integer())
    return number(double(*whole));
  if (const auto* real = list.real())
    return number(*real);
  if (const auto* string = list.string())
    return text(*string);
  if (const auto* bytes = list.data())
    return data(std::string(bytes->view()));
  if (const auto* items = list.array()) {
    std::vector<CFTypeRef> made;
    for (const auto& item : *items)
      made.push_back(objectOf(item));
    return array(std::move(made));
  }
  std::map<std::string, CFTypeRef> made;
  for (const auto& [key, item] : *list.dictionary())
    made.emplace(key, objectOf(item));
  return dictionary(std::move(made));
}

CFRunLoopSourceRef makeSource() { return as<CFRunLoopSourceRef>(make(sourceType)); }
Source& sourceOf(CFRunLoopSourceRef source) { return object(source)->source; }

} // namespace tavrin::fake

extern "C" {
const CFAllocatorRef kCFAllocatorDefault = nullptr;
const CFBooleanRef kCFBooleanTrue = static_cast<CFBooleanRef>(fake::flag(true));
const CFBooleanRef kCFBooleanFalse = static_cast<CFBooleanRef>(fake::flag(false));
const CFRunLoopMode kCFRunLoopCommonModes = fake::constant("common modes");
const CFRunLoopMode kCFRunLoopDefaultMode = fake::constant("default mode");
struct CFDictionaryKeyCallBacks {};
struct CFDictionaryValueCallBacks {};
extern const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks{};
extern const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks{};

CFTypeRef CFRetain(CFTypeRef reference) {
  ++used(reference)->references;
  return reference;
}
void CFRelease(CFTypeRef reference) {
  Object* gone = used(reference);
  if (gone == nullptr || gone->isConstant || !live().contains(gone) || --gone->references > 0)
    return;
  live().erase(gone);
  for (CFTypeRef item : gone->items)
    CFRelease(item);
  for (const auto& [key, item] : gone->entries)
    CFRelease(item);
  delete gone;
}
CFTypeID CFGetTypeID(CFTypeRef reference) { return used(reference)->type; }
CFTypeID CFStringGetTypeID() { return textType; }
CFTypeID CFNumberGetTypeID() { return numberType; }
CFTypeID CFBooleanGetTypeID() { return flagType; }
CFTypeID CFDataGetTypeID() { return dataType; }
CFTypeID CFArrayGetTypeID() { return arrayType; }
CFTypeID CFDictionaryGetTypeID() { return dictionaryType; }

CFStringRef CFStringCreateWithCString(CFAllocatorRef, const char* bytes, CFStringEncoding encoding) {
  return encoding == kCFStringEncodingUTF8 ? fake::text(bytes) : nullptr;
}
CFIndex CFStringGetLength(CFStringRef string) { return CFIndex(used(string)->text.size()); }
CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding) { return length * 3; }
Boolean CFStringGetCString(CFStringRef string, char* buffer, CFIndex size, CFStringEncoding) {
  const auto& text = used(string)->text;
  if (text.size() >= std::size_t(size))
    return false;
  std::memcpy(buffer, text.c_str(), text.size() + 1);
  return true;
}
Boolean CFBooleanGetValue(CFBooleanRef boolean) { return used(boolean)->number != 0; }
Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value) {
  const double held = used(number)->number;
  if (used(number)->type != numberType)
    fake::misuses().push_back("no number was read as one");
  if (type == kCFNumberDoubleType)
    return std::memcpy(value, &held, sizeof held), true;
  const int whole = static_cast<int>(held);
  std::memcpy(value, &whole, sizeof whole);
  return whole == held;
}
CFDataRef CFDataCreate(CFAllocatorRef, const uint8_t* bytes, CFIndex length) {
  return static_cast<CFDataRef>(
      fake::data(std::string(reinterpret_cast<const char*>(bytes), std::size_t(length))));
}
CFIndex CFDataGetLength(CFDataRef data) { return CFIndex(used(data)->text.size()); }
const uint8_t* CFDataGetBytePtr(CFDataRef data) {
  return reinterpret_cast<const uint8_t*>(used(data)->text.data());
}
CFIndex CFArrayGetCount(CFArrayRef array) { return CFIndex(used(array)->items.size()); }
const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index) {
  return used(array)->items.at(std::size_t(index));
}
const void* CFDictionaryGetValue(CFDictionaryRef dictionary, const void* key) {
  return fake::entryOf(dictionary, fake::textOf(key));
}
CFDictionaryRef CFDictionaryCreate(CFAllocatorRef, const void** keys, const void** values,
                                   CFIndex count, const CFDictionaryKeyCallBacks* keyCallBacks,
                                   const CFDictionaryValueCallBacks* valueCallBacks) {
  if (keyCallBacks != &kCFTypeDictionaryKeyCallBacks ||
      valueCallBacks != &kCFTypeDictionaryValueCallBacks)
    fake::misuses().push_back("a dictionary that does not keep its values");
  std::map<std::string, CFTypeRef> entries;
  for (CFIndex i = 0; i < count; ++i)
    entries.emplace(fake::textOf(keys[i]), CFRetain(values[i]));
  return fake::dictionary(std::move(entries));
}
CFDataRef CFPropertyListCreateData(CFAllocatorRef, CFPropertyListRef list, CFPropertyListFormat format,
                                   CFOptionFlags, CFErrorRef*) {
  if (format != kCFPropertyListBinaryFormat_v1_0)
    return nullptr;
  return static_cast<CFDataRef>(fake::data(std::string(fake::listOf(list).binary().view())));
}
CFPropertyListRef CFPropertyListCreateWithData(CFAllocatorRef, CFDataRef data, CFOptionFlags,
                                               CFPropertyListFormat*, CFErrorRef*) {
  return fake::objectOf(PropertyList::parse(used(data)->text));
}
CFRunLoopRef CFRunLoopGetMain() { return reinterpret_cast<CFRunLoopRef>(1); }
CFRunLoopRef CFRunLoopGetCurrent() { return reinterpret_cast<CFRunLoopRef>(2); }
void CFRunLoopAddSource(CFRunLoopRef loop, CFRunLoopSourceRef source, CFRunLoopMode mode) {
  used(source)->source.loop = loop;
  used(source)->source.mode = fake::textOf(mode);
}
void CFRunLoopRemoveSource(CFRunLoopRef, CFRunLoopSourceRef source, CFRunLoopMode) {
  used(source)->source.loop = nullptr;
}
void CFRunLoopSourceInvalidate(CFRunLoopSourceRef source) {
  used(source)->source.isInvalid = true;
  used(source)->source.loop = nullptr;
}
}
