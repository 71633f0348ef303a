#include "Tests/macOS/Fakes/InputFakes.h"

InputState input;
static EventHotKeyID pressed;

bool sendInput(unsigned type) {
  auto* event = reinterpret_cast<CGEventRef>(64);
  return input.callback(nullptr, CGEventType(type), event, input.context) == event;
}
OSStatus pressKey(EventHotKeyID identity) {
  pressed = identity;
  return input.handler(nullptr, nullptr, input.handlerContext);
}

// Two objects of the classes that the counting of CFRelease can follow.
@interface FakePort : NSObject
@end
@implementation FakePort
- (void)dealloc { --input.ports; }
@end
@interface FakeSource : NSObject
@end
@implementation FakeSource
- (void)dealloc { --input.sources; }
@end

extern "C" {
const CFRunLoopMode kCFRunLoopCommonModes = CFSTR("common");
CFStringRef kAXTrustedCheckOptionPrompt = CFSTR("prompt");
Boolean AXIsProcessTrusted(void) { return input.isTrusted; }
Boolean AXIsProcessTrustedWithOptions(CFDictionaryRef options) {
  note(((__bridge NSNumber*)CFDictionaryGetValue(options, kAXTrustedCheckOptionPrompt)).boolValue ? "prompt" : "no prompt");
  return input.isTrusted;
}
Boolean IsSecureEventInputEnabled(void) { return input.isSecure; }
CFDictionaryRef CGSessionCopyCurrentDictionary(void) {
  if (input.isLocked) return (CFDictionaryRef)CFBridgingRetain(@{@"CGSSessionScreenIsLocked" : @1});
  return (CFDictionaryRef)CFBridgingRetain(@{@"kCGSSessionOnConsoleKey" : @YES});
}
CFMachPortRef CGEventTapCreate(CGEventTapLocation tap, CGEventTapPlacement place, CGEventTapOptions options, CGEventMask events,
                               CGEventTapCallBack callback, void* context) {
  note("tap " + std::to_string(tap) + " " + std::to_string(place) + " " + std::to_string(options) + (events == ~CGEventMask{0} ? " all" : " some"));
  if (!input.hasTap) return nullptr;
  input.callback = callback;
  input.context = context;
  input.isEnabled = true;
  ++input.ports;
  return (CFMachPortRef)CFBridgingRetain([[FakePort alloc] init]);
}
void CGEventTapEnable(CFMachPortRef, bool enable) { note(enable ? "enable" : "disable"); input.isEnabled = enable; }
bool CGEventTapIsEnabled(CFMachPortRef) { return input.isEnabled; }
CFRunLoopSourceRef CFMachPortCreateRunLoopSource(CFAllocatorRef, CFMachPortRef, CFIndex) {
  if (!input.hasSource) return nullptr;
  ++input.sources;
  return (CFRunLoopSourceRef)CFBridgingRetain([[FakeSource alloc] init]);
}
void CFMachPortInvalidate(CFMachPortRef) { note("invalidate"); }
CFRunLoopRef CFRunLoopGetMain(void) { return nullptr; }
void CFRunLoopAddSource(CFRunLoopRef, CFRunLoopSourceRef, CFRunLoopMode mode) { note(mode == kCFRunLoopCommonModes ? "add source" : "add source to a wrong mode"); }
void CFRunLoopRemoveSource(CFRunLoopRef, CFRunLoopSourceRef, CFRunLoopMode) { note("remove source"); }

EventTargetRef GetApplicationEventTarget(void) { return nullptr; }
OSStatus InstallEventHandler(EventTargetRef, EventHandlerUPP handler, ItemCount, const EventTypeSpec* types, void* context, EventHandlerRef* reference) {
  note("handler " + std::to_string(types->eventKind));
  input.handler = handler;
  input.handlerContext = context;
  *reference = reinterpret_cast<EventHandlerRef>(8);
  return noErr;
}
OSStatus RemoveEventHandler(EventHandlerRef) { note("no handler"); return noErr; }
OSStatus GetEventParameter(EventRef, EventParamName name, EventParamType type, EventParamType*, ByteCount size, ByteCount*, void* data) {
  if (name != kEventParamDirectObject || type != typeEventHotKeyID || size != sizeof pressed) return -1;
  *static_cast<EventHotKeyID*>(data) = pressed;
  return noErr;
}
OSStatus RegisterEventHotKey(UInt32 key, UInt32 modifiers, EventHotKeyID identity, EventTargetRef, OptionBits, EventHotKeyRef* reference) {
  if (input.refused.contains(key)) return input.refused[key];
  note("key " + std::to_string(key) + " with " + std::to_string(modifiers));
  input.keys[key] = identity;
  *reference = reinterpret_cast<EventHotKeyRef>(std::size_t{key} + 1);
  return noErr;
}
OSStatus UnregisterEventHotKey(EventHotKeyRef reference) {
  input.keys.erase(unsigned(reinterpret_cast<std::size_t>(reference) - 1));
  return noErr;
}
}
