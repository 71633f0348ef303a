#include "AppKitFakes.h"

extern "C" {
id tavrin_make(Class type) __attribute__((ns_returns_retained));
void tavrin_free(void* object);
bool tavrin_responds(void* object, SEL selector);
Class tavrin_class(void* object);
bool tavrin_is_kind(void* object, Class type);
}
#define RAW(object) ((__bridge void*)(object))
std::vector<std::string> calls;
int frontmost = 0;
static void note(std::string call) { calls.push_back(std::move(call)); }

#pragma clang diagnostic ignored "-Wincomplete-implementation"
#pragma clang diagnostic ignored "-Wobjc-property-implementation"
#pragma clang diagnostic ignored "-Wobjc-missing-super-calls"

@implementation NSObject
+ (instancetype)alloc { return tavrin_make(self); }
+ (instancetype)new { return [[self alloc] init]; }
- (instancetype)init { return self; }
- (void)dealloc { tavrin_free(RAW(self)); }
- (BOOL)isEqual:(id)object { return self == object; }
- (BOOL)respondsToSelector:(SEL)selector { return tavrin_responds(RAW(self), selector); }
- (Class)class { return tavrin_class(RAW(self)); }
- (instancetype)self { return self; }
- (BOOL)isKindOfClass:(Class)kind { return tavrin_is_kind(RAW(self), kind); }
@end

@implementation NSString
@dynamic UTF8String, fileSystemRepresentation, length;
@end
@interface NSConstantString : NSString
@end
@implementation NSConstantString { int flags; const char* text; unsigned long count; }
- (const char*)UTF8String { return text; }
- (const char*)fileSystemRepresentation { return text; }
- (NSUInteger)length { return count; }
@end

@implementation NSArray
@dynamic count, firstObject;
@end
@implementation FakeArray { std::vector<id> items; }
- (instancetype)initWith:(std::vector<id>)list { items = std::move(list); return self; }
- (NSUInteger)count { return items.size(); }
- (id)firstObject { return items.empty() ? nil : items.front(); }
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id __unsafe_unretained*)buffer count:(NSUInteger)count {
  static unsigned long unchanged;
  if (state->state != 0 || items.size() > count) return 0;
  for (std::size_t i = 0; i < items.size(); ++i) buffer[i] = items[i];
  state->state = 1;
  state->itemsPtr = buffer;
  state->mutationsPtr = &unchanged;
  return items.size();
}
@end

@implementation NSOperationQueue
+ (NSOperationQueue*)mainQueue { static NSOperationQueue* queue = [[NSOperationQueue alloc] init]; return queue; }
@end
@interface FakeObservation : NSObject
@property(nonatomic, strong) NSString* name;
@property(nonatomic, copy) void (^block)(NSNotification*);
@end
@implementation FakeObservation
@end
@implementation NSNotification
@end
@implementation NSNotificationCenter { std::vector<FakeObservation*> all; }
- (id<NSObject>)addObserverForName:(NSNotificationName)name object:(id)object
                             queue:(NSOperationQueue*)queue usingBlock:(void (^)(NSNotification*))block {
  FakeObservation* observation = [[FakeObservation alloc] init];
  observation.name = name;
  observation.block = block;
  all.push_back(observation);
  return (id<NSObject>)observation;
}
- (void)removeObserver:(id)observer {
  for (auto each = all.begin(); each != all.end(); ++each)
    if (*each == observer) { all.erase(each); return; }
}
- (void)post:(NSString*)name {
  const auto now = all;
  for (FakeObservation* each : now)
    if (each.name == name) each.block((NSNotification*)nil);
}
@end
NSNotificationName const NSWorkspaceScreensDidSleepNotification = @"sleep";
NSNotificationName const NSWorkspaceScreensDidWakeNotification = @"wake";

@implementation NSRunningApplication { int number; }
+ (NSRunningApplication*)numbered:(int)number {
  NSRunningApplication* application = [[NSRunningApplication alloc] init];
  application->number = number;
  return application;
}
+ (NSRunningApplication*)currentApplication { return [self numbered:self_]; }
- (int)processIdentifier { return number; }
- (BOOL)activateWithOptions:(NSApplicationActivationOptions)options {
  note("activate " + std::to_string(number) + " with " + std::to_string(options));
  frontmost = number;
  return YES;
}
@end
@implementation NSWorkspace { NSNotificationCenter* center; }
+ (NSWorkspace*)sharedWorkspace { static NSWorkspace* shared = [[NSWorkspace alloc] init]; return shared; }
- (NSNotificationCenter*)notificationCenter {
  if (center == nil) center = [[NSNotificationCenter alloc] init];
  return center;
}
- (NSRunningApplication*)frontmostApplication { return frontmost == 0 ? nil : [NSRunningApplication numbered:frontmost]; }
@end

@implementation NSResponder
@end
@implementation NSView
- (instancetype)initWithFrame:(NSRect)frame { self.frame = frame; self.bounds = frame; return self; }
@end
@implementation NSImageView
@end
@implementation NSImage
- (instancetype)initWithCGImage:(CGImageRef)image size:(NSSize)size { note("image " + std::to_string(int(size.width))); return self; }
@end
@implementation NSColor
+ (NSColor*)clearColor { return [[NSColor alloc] init]; }
@end
@implementation NSViewController
@end
@implementation NSScreen { CGFloat scale; }
+ (NSArray<NSScreen*>*)screens {
  NSScreen* a = [[NSScreen alloc] init]; a->scale = 1;
  NSScreen* b = [[NSScreen alloc] init]; b->scale = 2;
  return [[FakeArray alloc] initWith:{a, b}];
}
- (CGFloat)backingScaleFactor { return scale; }
@end
@implementation NSDockTile
- (NSSize)size { return NSSize{128, 128}; }
- (void)display { note("display"); }
@end
@implementation NSWindow
- (instancetype)initWithContentRect:(NSRect)rect styleMask:(NSWindowStyleMask)style
                            backing:(NSBackingStoreType)backing defer:(BOOL)defers {
  self.contentView = [[NSView alloc] initWithFrame:rect];
  note("window style " + std::to_string(style));
  return self;
}
- (void)setFrameOrigin:(NSPoint)origin { note("origin " + std::to_string(int(origin.x)) + "," + std::to_string(int(origin.y))); }
- (void)orderFrontRegardless { note("anchor front at level " + std::to_string(self.level)); }
- (void)orderOut:(id)sender { note("anchor out"); }
- (void)makeKeyWindow { note("key"); }
@end
@implementation NSPanel
@end
@implementation NSPopover { BOOL isShown; }
- (BOOL)isShown { return isShown; }
- (void)showRelativeToRect:(NSRect)rect ofView:(NSView*)view preferredEdge:(NSRectEdge)edge {
  note("popover " + std::to_string(int(rect.size.width)) + " edge " + std::to_string(edge));
  isShown = YES;
}
- (void)performClose:(id)sender {
  note("perform close");
  isShown = NO;
  [self.delegate popoverDidClose:(NSNotification*)nil];
}
- (void)close { isShown = NO; }
@end
@implementation NSApplication { NSDockTile* tile; }
+ (NSApplication*)sharedApplication { static NSApplication* shared = [[NSApplication alloc] init]; return shared; }
- (NSDockTile*)dockTile { if (tile == nil) tile = [[NSDockTile alloc] init]; return tile; }
- (BOOL)isActive { return frontmost == self_; }
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)policy { note("policy " + std::to_string(policy)); return YES; }
- (NSInteger)requestUserAttention:(NSRequestUserAttentionType)type { note("attention " + std::to_string(type)); return 5; }
- (void)cancelUserAttentionRequest:(NSInteger)request { note("cancel " + std::to_string(request)); }
- (void)replyToOpenOrPrint:(NSApplicationDelegateReply)reply { note("reply " + std::to_string(reply)); }
- (void)activate { note("activate self"); frontmost = self_; }
@end

extern "C" CGWindowLevel CGWindowLevelForKey(CGWindowLevelKey key) { return key == kCGDockWindowLevelKey ? 20 : 0; }
extern "C" void CGImageRelease(CGImageRef) { note("picture released"); }
