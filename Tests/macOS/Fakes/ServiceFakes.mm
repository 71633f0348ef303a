#include "Tests/macOS/Fakes/ServiceFakes.h"

#import <CoreServices/AppleEvents.h>
#import <Foundation/NSAppleEventDescriptor.h>
#import <Foundation/NSXPCConnection.h>

#pragma clang diagnostic ignored "-Wincomplete-implementation"
#pragma clang diagnostic ignored "-Wobjc-property-implementation"

ServiceState services;

static std::string textOf(NSString* string) { return string.UTF8String != nullptr ? string.UTF8String : ""; }
static std::string letters(unsigned code) {
  return {char(code >> 24), char(code >> 16), char(code >> 8), char(code)};
}
static unsigned number(const std::string& letters) {
  unsigned code = 0;
  for (const char each : letters) code = code << 8 | static_cast<unsigned char>(each);
  return code;
}

@implementation NSAppleEventDescriptor {
  std::map<unsigned, NSAppleEventDescriptor*> parts;
  std::string text;
  double value;
  unsigned code;
  int process;
  unsigned suite, event;
  bool isSpecifier, isNull;
}
+ (NSAppleEventDescriptor*)made { return [[NSAppleEventDescriptor alloc] init]; }
+ (NSAppleEventDescriptor*)nullDescriptor { NSAppleEventDescriptor* made = [self made]; made->isNull = true; return made; }
+ (NSAppleEventDescriptor*)recordDescriptor { return [self made]; }
+ (NSAppleEventDescriptor*)descriptorWithDouble:(double)number { NSAppleEventDescriptor* made = [self made]; made->value = number; return made; }
+ (NSAppleEventDescriptor*)descriptorWithTypeCode:(OSType)code { NSAppleEventDescriptor* made = [self made]; made->code = code; return made; }
+ (NSAppleEventDescriptor*)descriptorWithEnumCode:(OSType)code { return [self descriptorWithTypeCode:code]; }
+ (NSAppleEventDescriptor*)descriptorWithProcessIdentifier:(int)process { NSAppleEventDescriptor* made = [self made]; made->process = process; return made; }
+ (NSAppleEventDescriptor*)appleEventWithEventClass:(AEEventClass)suite eventID:(AEEventID)event
                                   targetDescriptor:(NSAppleEventDescriptor*)target
                                           returnID:(AEReturnID)returnID transactionID:(AETransactionID)transactionID {
  NSAppleEventDescriptor* made = [self made];
  made->suite = suite;
  made->event = event;
  made->process = target->process;
  return made;
}
- (void)setDescriptor:(NSAppleEventDescriptor*)part forKeyword:(AEKeyword)keyword { parts[keyword] = part; }
- (void)setParamDescriptor:(NSAppleEventDescriptor*)part forKeyword:(AEKeyword)keyword { parts[keyword] = part; }
- (NSAppleEventDescriptor*)paramDescriptorForKeyword:(AEKeyword)keyword { return parts[keyword]; }
- (NSAppleEventDescriptor*)coerceToDescriptorType:(DescType)type { isSpecifier = type == typeObjectSpecifier; return self; }
- (NSString*)stringValue { return text.empty() ? nil : [NSString stringWithUTF8String:text.c_str()]; }
- (double)doubleValue { return value; }
- (SInt32)int32Value { return SInt32(value); }
- (OSType)enumCodeValue { return code; }
/// The property that this names, with its object before it: "pTrk.pnam".
- (std::string)path {
  if (isNull) return "";
  if (!isSpecifier || parts[keyAEDesiredClass]->code != cProperty || parts[keyAEKeyForm]->code != formPropertyID) return "?";
  const std::string above = [parts[keyAEContainer] path];
  return (above.empty() ? "" : above + ".") + letters(parts[keyAEKeyData]->code);
}
- (NSAppleEventDescriptor*)answerOf:(FakePlayer&)player {
  const std::string path = [parts[keyDirectObject] path];
  NSAppleEventDescriptor* made = [NSAppleEventDescriptor made];
  if (player.numbers.contains(path)) made->value = player.numbers[path];
  else if (player.texts.contains(path)) made->text = player.texts[path];
  else if (player.codes.contains(path)) made->code = number(player.codes[path]);
  else return nil;
  return made;
}
- (NSAppleEventDescriptor*)sendEventWithOptions:(NSAppleEventSendOptions)options timeout:(NSTimeInterval)seconds error:(NSError* __autoreleasing*)error {
  const bool isGet = event == kAEGetData;
  if (!isGet) {
    std::string call = "to " + std::to_string(process) + ": " + letters(suite) + " " + letters(event);
    if (parts.contains(keyDirectObject)) call += " " + [parts[keyDirectObject] path] + " = " + std::to_string(parts[keyAEData]->value);
    note(call);
  }
  if (seconds > 5 || (options & NSAppleEventSendWaitForReply) != NSAppleEventSendWaitForReply) note("no wait for a reply, or a long one");
  if (!services.players.contains(process)) {
    *error = [NSError errorWithDomain:NSCocoaErrorDomain code:procNotFound userInfo:@{}];
    return nil;
  }
  FakePlayer& player = services.players[process];
  if (player.sendError != 0) {
    *error = [NSError errorWithDomain:NSCocoaErrorDomain code:player.sendError userInfo:@{}];
    return nil;
  }
  NSAppleEventDescriptor* reply = [NSAppleEventDescriptor made];
  if (player.replyError != 0) {
    reply->parts[keyErrorNumber] = [NSAppleEventDescriptor made];
    reply->parts[keyErrorNumber]->value = player.replyError;
  } else if (isGet) {
    if (NSAppleEventDescriptor* answer = [self answerOf:player]) reply->parts[keyDirectObject] = answer;
    else {
      reply->parts[keyErrorNumber] = [NSAppleEventDescriptor made];
      reply->parts[keyErrorNumber]->value = errAENoSuchObject;
    }
  }
  return reply;
}
@end

// The helper's service and the connections to it.
@implementation SMAppService { std::string plist; }
+ (instancetype)daemonServiceWithPlistName:(NSString*)name {
  SMAppService* made = [[self alloc] init];
  made->plist = textOf(name);
  return made;
}
- (SMAppServiceStatus)status { return services.helper; }
- (BOOL)registerAndReturnError:(NSError* __autoreleasing*)error {
  note("register " + plist);
  services.helper = services.afterRegistering;
  if (services.registerError == 0) return YES;
  *error = [NSError errorWithDomain:NSCocoaErrorDomain code:services.registerError userInfo:@{}];
  return NO;
}
- (void)unregisterWithCompletionHandler:(void (^)(NSError*))handler { note("unregister " + plist); services.unregistered = handler; }
+ (SMAppServiceStatus)statusForLegacyURL:(NSURL*)url { return services.forbidden.contains(textOf(url.path)) ? SMAppServiceStatusRequiresApproval : SMAppServiceStatusEnabled; }
+ (void)openSystemSettingsLoginItems { note("login items"); }
@end
@implementation NSXPCInterface
+ (NSXPCInterface*)interfaceWithProtocol:(Protocol*)protocol { return [[NSXPCInterface alloc] init]; }
@end
/// Answers each message as a connection does that finds nobody.
@interface FakeNobody : NSObject
@property(nonatomic, copy) void (^failed)(NSError*);
@end
@implementation FakeNobody
- (void)setFull:(BOOL)full reply:(void (^)(NSString*))reply { self.failed([NSError errorWithDomain:NSCocoaErrorDomain code:4099 userInfo:@{}]); }
@end
@implementation NSXPCConnection { bool isActive; }
- (instancetype)initWithMachServiceName:(NSString*)name options:(NSXPCConnectionOptions)options {
  note("connect " + textOf(name) + (options == NSXPCConnectionPrivileged ? " privileged" : ""));
  return self;
}
- (void)activate { isActive = true; note("activate connection"); }
- (void)invalidate {
  note("invalidate");
  isActive = false;
  void (^handler)() = self.invalidationHandler;
  self.invalidationHandler = nil;
  if (handler != nil) handler();
}
- (id)remoteObjectProxyWithErrorHandler:(void (^)(NSError*))handler {
  if (services.remote != nil && isActive && self.remoteObjectInterface != nil) return services.remote;
  FakeNobody* nobody = [[FakeNobody alloc] init];
  nobody.failed = handler;
  return nobody;
}
- (void)dealloc { if (isActive) note("connection lost"); }
@end

@implementation INFocusStatus
- (NSNumber*)isFocused { return services.isFocused; }
@end
@implementation INFocusStatusCenter
+ (INFocusStatusCenter*)defaultCenter { static INFocusStatusCenter* center = [[INFocusStatusCenter alloc] init]; return center; }
- (INFocusStatus*)focusStatus { return [[INFocusStatus alloc] init]; }
- (INFocusStatusAuthorizationStatus)authorizationStatus { return services.focusAccess; }
@end
