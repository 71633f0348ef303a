#include "Tests/macOS/Fakes/FoundationFakes.h"

#include <algorithm>
#include <cmath>
#include <strings.h>
#include <unistd.h>

#pragma clang diagnostic ignored "-Wincomplete-implementation"
#pragma clang diagnostic ignored "-Wobjc-property-implementation"
#pragma clang diagnostic ignored "-Wobjc-missing-super-calls"

std::vector<std::string> calls;
void note(std::string call) { calls.push_back(std::move(call)); }
FoundationState foundation;

static NSString* make(const std::string& text) {
  return [[NSString alloc] initWithBytes:text.data() length:text.size() encoding:NSUTF8StringEncoding];
}
static std::string textOf(NSString* string) { return string.UTF8String != nullptr ? string.UTF8String : ""; }

@implementation NSObject
+ (instancetype)alloc { return tavrin_make(self); }
+ (instancetype)new { return [[self alloc] init]; }
+ (Class)class { return self; }
- (instancetype)init { return self; }
- (void)dealloc { tavrin_free(RAW(self)); }
- (BOOL)isEqual:(id)object { return self == object; }
- (BOOL)respondsToSelector:(SEL)selector { return tavrin_responds(RAW(self), selector); }
- (Class)class { return tavrin_class(RAW(self)); }
- (instancetype)self { return self; }
- (BOOL)isKindOfClass:(Class)kind { return tavrin_is_kind(RAW(self), kind); }
- (void)addObserver:(NSObject*)observer forKeyPath:(NSString*)path options:(NSKeyValueObservingOptions)options context:(void*)context { note("observe " + textOf(path)); }
- (void)removeObserver:(NSObject*)observer forKeyPath:(NSString*)path context:(void*)context { note("no more of " + textOf(path)); }
- (void)observeValueForKeyPath:(NSString*)path ofObject:(id)object change:(NSDictionary*)change context:(void*)context {}
@end

/// Has no variables: those of constant strings lie where the compiler puts them.
@interface FakeString : NSString
@end
@implementation NSString
@dynamic UTF8String, length;
+ (instancetype)alloc { return tavrin_make(self == NSString.class ? FakeString.class : self); }
+ (instancetype)stringWithUTF8String:(const char*)bytes { return make(bytes); }
- (const char*)fileSystemRepresentation { return self.UTF8String; }
- (BOOL)isEqualToString:(NSString*)other { return textOf(self) == textOf(other); }
- (BOOL)isEqual:(id)other { return [other isKindOfClass:NSString.class] && [self isEqualToString:other]; }
- (NSComparisonResult)localizedCaseInsensitiveCompare:(NSString*)other {
  const int order = strcasecmp(self.UTF8String, other.UTF8String);
  return order < 0 ? NSOrderedAscending : order > 0 ? NSOrderedDescending : NSOrderedSame;
}
@end
@implementation FakeString { std::string text; }
- (instancetype)initWithBytes:(const void*)bytes length:(NSUInteger)length encoding:(NSStringEncoding)encoding {
  text.assign(static_cast<const char*>(bytes), length);
  return self;
}
- (const char*)UTF8String { return text.c_str(); }
- (NSUInteger)length { return text.size(); }
@end
@interface NSConstantString : NSString
@end
@implementation NSConstantString { int flags; const char* bytes; unsigned long count; }
- (const char*)UTF8String { return bytes; }
- (NSUInteger)length { return count; }
@end

@implementation NSNumber { double value; long long whole; bool isBoolean; }
+ (NSNumber*)number:(double)number isBoolean:(bool)isBoolean {
  NSNumber* made = [[self alloc] init];
  made->value = number;
  made->whole = (long long)number;
  made->isBoolean = isBoolean;
  return made;
}
+ (NSNumber*)whole:(long long)whole {
  NSNumber* made = [self number:double(whole) isBoolean:false];
  made->whole = whole;
  return made;
}
+ (NSNumber*)numberWithBool:(BOOL)flag { return [self number:flag isBoolean:true]; }
+ (NSNumber*)numberWithInt:(int)whole { return [self number:whole isBoolean:false]; }
+ (NSNumber*)numberWithInteger:(NSInteger)whole { return [self number:double(whole) isBoolean:false]; }
+ (NSNumber*)numberWithLongLong:(long long)whole { return [self whole:whole]; }
+ (NSNumber*)numberWithDouble:(double)number { return [self number:number isBoolean:false]; }
- (double)doubleValue { return value; }
- (NSInteger)integerValue { return NSInteger(value); }
- (long long)longLongValue { return whole; }
- (BOOL)boolValue { return value != 0; }
- (bool)isBoolean { return isBoolean; }
@end
@interface NSNumber (Fake)
- (bool)isBoolean;
@end

@implementation NSArray { std::vector<id> items; }
+ (instancetype)arrayWithObjects:(const id*)objects count:(NSUInteger)count {
  NSArray* array = [[self alloc] init];
  array->items.assign(objects, objects + count);
  return array;
}
- (instancetype)put:(std::vector<id>)list { items = std::move(list); return self; }
- (void)append:(id)item { items.push_back(item); }
- (NSUInteger)count { return items.size(); }
- (id)firstObject { return items.empty() ? nil : items.front(); }
- (id)objectAtIndexedSubscript:(NSUInteger)index { return items.at(index); }
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id __unsafe_unretained*)buffer count:(NSUInteger)count {
  static unsigned long unchanged;
  const std::size_t begin = state->state, end = std::min(items.size(), begin + count);
  for (std::size_t i = begin; i < end; ++i) buffer[i - begin] = items[i];
  state->state = end;
  state->itemsPtr = buffer;
  state->mutationsPtr = &unchanged;
  return end - begin;
}
@end
@interface NSArray (Fake)
- (instancetype)put:(std::vector<id>)list;
- (void)append:(id)item;
@end
@implementation FakeArray
- (instancetype)initWith:(std::vector<id>)list { return [self put:std::move(list)]; }
@end
/// What the compiler puts for an empty literal.
extern "C" NSArray* const __NSArray0__ = [[NSArray alloc] init];
@implementation NSMutableArray
+ (instancetype)array { return [[self alloc] init]; }
- (void)addObject:(id)item { [self append:item]; }
@end

@implementation NSDictionary { std::vector<std::pair<id, id>> entries; }
+ (instancetype)dictionary { return [[self alloc] init]; }
+ (instancetype)dictionaryWithObjects:(const id*)values forKeys:(const id*)keys count:(NSUInteger)count {
  NSDictionary* made = [[self alloc] init];
  for (NSUInteger i = 0; i < count; ++i) made->entries.emplace_back(keys[i], values[i]);
  return made;
}
- (id)objectForKey:(id)key {
  for (const auto& [name, value] : entries)
    if ([name isEqual:key]) return value;
  return nil;
}
- (id)objectForKeyedSubscript:(id)key { return [self objectForKey:key]; }
- (NSUInteger)count { return entries.size(); }
- (NSArray*)allKeys {
  std::vector<id> keys;
  for (const auto& [name, value] : entries) keys.push_back(name);
  return [[FakeArray alloc] initWith:keys];
}
- (void)setObject:(id)value forKeyedSubscript:(id)key { entries.emplace_back(key, value); }
@end
extern "C" NSDictionary* const __NSDictionary0__ = [[NSDictionary alloc] init];
@implementation NSMutableDictionary
@end

@implementation NSData { std::string kept; }
+ (instancetype)dataWithBytes:(const void*)bytes length:(NSUInteger)length {
  NSData* data = [[self alloc] init];
  data->kept.assign(static_cast<const char*>(bytes), length);
  return data;
}
- (const void*)bytes { return kept.data(); }
- (NSUInteger)length { return kept.size(); }
@end

@implementation NSURL { std::string address; }
+ (NSURL*)fileURLWithPath:(NSString*)path { return [self URLWithString:make("file://" + textOf(path))]; }
+ (instancetype)URLWithString:(NSString*)text {
  if (text.length == 0) return nil;
  NSURL* url = [[self alloc] init];
  url->address = textOf(text);
  return url;
}
- (NSString*)absoluteString { return make(address); }
- (NSString*)path { return address.rfind("file://", 0) == 0 ? make(address.substr(7)) : nil; }
@end

@implementation NSError
+ (instancetype)errorWithDomain:(NSErrorDomain)domain code:(NSInteger)code userInfo:(NSDictionary*)info {
  NSError* error = [[self alloc] init];
  error->_domain = domain;
  error->_code = code;
  error->_localizedDescription = @"it went wrong";
  return error;
}
@end
NSErrorDomain const NSCocoaErrorDomain = @"NSCocoaErrorDomain";

@implementation NSOperationQueue
+ (NSOperationQueue*)mainQueue { static NSOperationQueue* queue = [[NSOperationQueue alloc] init]; return queue; }
@end
@implementation NSNotification { NSDictionary* info; }
+ (NSNotification*)named:(NSString*)name object:(id)object info:(NSDictionary*)info {
  NSNotification* made = [[self alloc] init];
  made->_name = name;
  made->_object = object;
  made->info = info;
  return made;
}
- (NSDictionary*)userInfo { return info; }
@end
@interface FakeObservation : NSObject
@property(nonatomic, strong) NSString* name;
@property(nonatomic, copy) void (^block)(NSNotification*);
@property(nonatomic, unsafe_unretained) id observer;
@property(nonatomic) SEL selector;
@end
@implementation FakeObservation
@end
@implementation NSNotificationCenter { std::vector<FakeObservation*> all; }
+ (NSNotificationCenter*)defaultCenter { static NSNotificationCenter* center = [[NSNotificationCenter alloc] init]; return center; }
- (id<NSObject>)addObserverForName:(NSNotificationName)name object:(id)object
                             queue:(NSOperationQueue*)queue usingBlock:(void (^)(NSNotification*))block {
  FakeObservation* observation = [[FakeObservation alloc] init];
  observation.name = name;
  observation.block = block;
  if (queue != NSOperationQueue.mainQueue) note("observed on any thread");
  all.push_back(observation);
  return (id<NSObject>)observation;
}
- (void)addObserver:(id)observer selector:(SEL)selector name:(NSNotificationName)name object:(id)object {
  FakeObservation* observation = [[FakeObservation alloc] init];
  observation.name = name;
  observation.observer = observer;
  observation.selector = selector;
  all.push_back(observation);
}
- (void)removeObserver:(id)observer {
  std::erase_if(all, [&](FakeObservation* each) { return each == observer || each.observer == observer; });
}
- (NSUInteger)observers { return all.size(); }
- (void)post:(NSString*)name object:(id)object info:(NSDictionary*)info {
  const auto now = all;
  for (FakeObservation* each : now) {
    // Who was removed meanwhile is told nothing.
    const bool isThere = std::find(all.begin(), all.end(), each) != all.end();
    if (!isThere || ![each.name isEqualToString:name]) continue;
    NSNotification* notice = [NSNotification named:name object:object info:info];
    if (each.block != nil) each.block(notice);
    else tavrin_perform(RAW(each.observer), each.selector, RAW(notice));
  }
}
@end
@implementation NSDistributedNotificationCenter
+ (NSDistributedNotificationCenter*)defaultCenter { static NSDistributedNotificationCenter* center = [[NSDistributedNotificationCenter alloc] init]; return center; }
- (void)addObserver:(id)observer selector:(SEL)selector name:(NSNotificationName)name object:(NSString*)object
    suspensionBehavior:(NSNotificationSuspensionBehavior)behavior {
  note("observe " + textOf(name) + " behaviour " + std::to_string(behavior));
  [self addObserver:observer selector:selector name:name object:object];
}
- (void)postNotificationName:(NSNotificationName)name object:(NSString*)object userInfo:(NSDictionary*)info deliverImmediately:(BOOL)immediately {
  note("post " + textOf(name) + (immediately ? " at once" : "") + (info != nil ? " with info" : ""));
  [self post:name object:object info:info];
}
@end

@implementation NSBundle { std::string path; }
+ (NSBundle*)mainBundle { return [[NSBundle alloc] init]; }
+ (instancetype)bundleWithURL:(NSURL*)url {
  if (!foundation.bundles.contains(textOf(url.path))) return nil;
  NSBundle* bundle = [[self alloc] init];
  bundle->path = textOf(url.path);
  return bundle;
}
- (NSURL*)bundleURL { return [NSURL fileURLWithPath:make(path.empty() ? foundation.bundlePath : path)]; }
- (NSURL*)executableURL { return foundation.bundles[path].hasProgram ? [NSURL fileURLWithPath:make(path + "/Contents/MacOS/program")] : nil; }
- (NSString*)bundleIdentifier {
  if (path.empty()) return (NSString*)foundation.information["CFBundleIdentifier"];
  const auto& identifier = foundation.bundles[path].identifier;
  return identifier.empty() ? nil : make(identifier);
}
- (id)objectForInfoDictionaryKey:(NSString*)key {
  const auto& information = path.empty() ? foundation.information : foundation.bundles[path].information;
  const auto found = information.find(textOf(key));
  return found != information.end() ? found->second : nil;
}
- (NSDictionary*)infoDictionary {
  NSMutableDictionary* made = [NSMutableDictionary dictionary];
  for (const auto& [name, value] : foundation.information) made[make(name)] = value;
  return made;
}
@end
@implementation NSProcessInfo
+ (NSProcessInfo*)processInfo { return [[NSProcessInfo alloc] init]; }
- (BOOL)isLowPowerModeEnabled { return foundation.isLowPower; }
- (NSDictionary*)environment {
  NSMutableDictionary* made = [NSMutableDictionary dictionary];
  for (const auto& [name, value] : foundation.environment) made[make(name)] = make(value);
  return made;
}
@end
@implementation NSFileManager
+ (NSFileManager*)defaultManager { return [[NSFileManager alloc] init]; }
- (NSURL*)homeDirectoryForCurrentUser { return [NSURL fileURLWithPath:@"/Users/ada"]; }
- (NSArray<NSURL*>*)URLsForDirectory:(NSSearchPathDirectory)directory inDomains:(NSSearchPathDomainMask)domains {
  if (directory == NSApplicationSupportDirectory) return @[ [NSURL fileURLWithPath:@"/Users/ada/Library/Application Support"] ];
  if (directory == NSDesktopDirectory) return @[ [NSURL fileURLWithPath:@"/Users/ada/Desktop"] ];
  std::vector<id> urls;
  if (directory == NSAllApplicationsDirectory && domains == NSAllDomainsMask)
    for (const auto& folder : foundation.applicationFolders) urls.push_back([NSURL fileURLWithPath:make(folder)]);
  return [[FakeArray alloc] initWith:urls];
}
- (BOOL)fileExistsAtPath:(NSString*)path { return ::access(path.UTF8String, F_OK) == 0; }
- (NSString*)displayNameAtPath:(NSString*)path { return make(foundation.displayNames[textOf(path)]); }
- (BOOL)trashItemAtURL:(NSURL*)url resultingItemURL:(NSURL* __autoreleasing*)result error:(NSError* __autoreleasing*)error {
  const std::string path = textOf(url.path), place = path + " in the trash";
  note("trash " + path);
  if (!foundation.canTrash || ::rename(path.c_str(), place.c_str()) != 0) return NO;
  if (result != nullptr) *result = [NSURL fileURLWithPath:make(place)];
  return YES;
}
- (BOOL)moveItemAtURL:(NSURL*)from toURL:(NSURL*)to error:(NSError* __autoreleasing*)error {
  if (::access(to.path.UTF8String, F_OK) == 0) return NO;
  return ::rename(from.path.UTF8String, to.path.UTF8String) == 0;
}
@end
@implementation NSUserDefaults { std::string suite; }
+ (NSUserDefaults*)standardUserDefaults { return [[NSUserDefaults alloc] init]; }
- (instancetype)initWithSuiteName:(NSString*)name { suite = textOf(name); return self; }
- (id)objectForKey:(NSString*)key { return foundation.defaults[suite][textOf(key)]; }
- (NSString*)stringForKey:(NSString*)key { return (NSString*)[self objectForKey:key]; }
- (BOOL)boolForKey:(NSString*)key { return ((NSNumber*)[self objectForKey:key]).boolValue; }
- (void)setObject:(id)value forKey:(NSString*)key { foundation.defaults[suite][textOf(key)] = value; note("set " + textOf(key)); }
- (void)removeObjectForKey:(NSString*)key { foundation.defaults[suite].erase(textOf(key)); note("remove " + textOf(key)); }
@end

@implementation NSDate { NSTimeInterval seconds; }
+ (instancetype)dateWithTimeIntervalSince1970:(NSTimeInterval)time {
  NSDate* date = [[self alloc] init];
  date->seconds = time;
  return date;
}
- (NSTimeInterval)timeIntervalSince1970 { return seconds; }
- (NSTimeInterval)timeIntervalSinceReferenceDate { return seconds - 978307200; }
@end
@implementation NSDateComponents
@end
@implementation NSTimeZone
+ (void)resetSystemTimeZone { note("zone anew"); }
@end
/// Days of UTC; a date of components counts days of January 1970 alone.
@implementation NSCalendar
+ (NSCalendar*)currentCalendar { return [[NSCalendar alloc] init]; }
+ (NSCalendar*)calendarWithIdentifier:(NSCalendarIdentifier)identifier { return [[NSCalendar alloc] init]; }
- (NSDate*)startOfDayForDate:(NSDate*)date {
  return [NSDate dateWithTimeIntervalSince1970:std::floor(date.timeIntervalSince1970 / 86400) * 86400];
}
- (NSDate*)dateFromComponents:(NSDateComponents*)parts {
  const double hour = parts.hour == NSDateComponentUndefined ? 0 : double(parts.hour);
  return [NSDate dateWithTimeIntervalSince1970:double(parts.day - 1) * 86400 + hour * 3600];
}
@end
@implementation NSPredicate
@end

NSCalendarIdentifier const NSCalendarIdentifierGregorian = @"gregorian";
NSNotificationName const NSProcessInfoPowerStateDidChangeNotification = @"power";
NSNotificationName const NSCalendarDayChangedNotification = @"day";
NSNotificationName const NSSystemClockDidChangeNotification = @"clock";
NSNotificationName const NSSystemTimeZoneDidChangeNotification = @"zone";

// Core Foundation over the same objects.
extern "C" {
const CFAllocatorRef kCFAllocatorDefault = nullptr;
const CFStringRef kCFPreferencesCurrentApplication = CFSTR("this application");
const CFBooleanRef kCFBooleanTrue = (CFBooleanRef)CFBridgingRetain(@YES);
const CFBooleanRef kCFBooleanFalse = (CFBooleanRef)CFBridgingRetain(@NO);
void objc_release(void* object);
void CFRelease(CFTypeRef object) { objc_release(const_cast<void*>(object)); }
CFTypeID CFBooleanGetTypeID(void) { return 21; }
CFTypeID CFNumberGetTypeID(void) { return 22; }
CFTypeID CFGetTypeID(CFTypeRef object) {
  id value = (__bridge id)object;
  if (![value isKindOfClass:NSNumber.class]) return 1;
  return [(NSNumber*)value isBoolean] ? CFBooleanGetTypeID() : CFNumberGetTypeID();
}
Boolean CFBooleanGetValue(CFBooleanRef boolean) { return ((__bridge NSNumber*)boolean).boolValue; }
Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value) {
  if (type != kCFNumberIntType) return false;
  *static_cast<int*>(value) = int(((__bridge NSNumber*)number).integerValue);
  return true;
}
const void* CFDictionaryGetValue(CFDictionaryRef dictionary, const void* key) {
  return (__bridge const void*)[(__bridge NSDictionary*)dictionary objectForKey:(__bridge id)key];
}
CFDictionaryRef CFDictionaryCreate(CFAllocatorRef, const void** keys, const void** values, CFIndex count,
                                   const CFDictionaryKeyCallBacks*, const CFDictionaryValueCallBacks*) {
  NSMutableDictionary* made = [NSMutableDictionary dictionary];
  for (CFIndex i = 0; i < count; ++i) made[(__bridge id)keys[i]] = (__bridge id)values[i];
  return (CFDictionaryRef)CFBridgingRetain(made);
}
Boolean CFPreferencesAppSynchronize(CFStringRef domain) {
  note("synchronize " + textOf((__bridge NSString*)domain));
  return foundation.canSynchronize;
}
struct CFArrayCallBacks { int unused; };
const CFArrayCallBacks kCFTypeArrayCallBacks{};
CFArrayRef CFArrayCreate(CFAllocatorRef, const void** values, CFIndex count, const CFArrayCallBacks*) {
  std::vector<id> items;
  for (CFIndex i = 0; i < count; ++i) items.push_back((__bridge id)values[i]);
  return (CFArrayRef)CFBridgingRetain([[FakeArray alloc] initWith:items]);
}
CFStringRef CFStringCreateWithCString(CFAllocatorRef, const char* bytes, CFStringEncoding encoding) {
  return encoding == kCFStringEncodingUTF8 ? (CFStringRef)CFBridgingRetain(make(bytes)) : nullptr;
}
struct CFDictionaryKeyCallBacks { int unused; };
struct CFDictionaryValueCallBacks { int unused; };
const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks{};
const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks{};
}
