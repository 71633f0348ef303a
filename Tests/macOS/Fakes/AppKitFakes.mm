#include "Tests/macOS/Fakes/AppKitFakes.h"

#pragma clang diagnostic ignored "-Wincomplete-implementation"
#pragma clang diagnostic ignored "-Wobjc-property-implementation"
#pragma clang diagnostic ignored "-Wobjc-missing-super-calls"

int frontmost = 0;
AppKitState appKit;

static std::string textOf(NSString* string) { return string.UTF8String != nullptr ? string.UTF8String : ""; }

NSNotificationName const NSWorkspaceScreensDidSleepNotification = @"sleep";
NSNotificationName const NSWorkspaceScreensDidWakeNotification = @"wake";
NSNotificationName const NSWorkspaceDidWakeNotification = @"did wake";
NSNotificationName const NSWorkspaceDidLaunchApplicationNotification = @"launched";
NSNotificationName const NSWorkspaceDidTerminateApplicationNotification = @"ended";
NSNotificationName const NSWorkspaceWillSleepNotification = @"will sleep";
NSNotificationName const NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification = @"options";
NSNotificationName const NSApplicationDidChangeScreenParametersNotification = @"screens";
NSAppearanceName const NSAppearanceNameAqua = @"light";
NSAppearanceName const NSAppearanceNameDarkAqua = @"dark";

@implementation NSRunningApplication { int number; }
+ (NSRunningApplication*)numbered:(int)number {
  NSRunningApplication* application = [[NSRunningApplication alloc] init];
  application->number = number;
  return application;
}
+ (NSRunningApplication*)currentApplication { return [self numbered:self_]; }
+ (NSArray<NSRunningApplication*>*)runningApplicationsWithBundleIdentifier:(NSString*)identifier {
  std::vector<id> found;
  if (const auto place = appKit.running.find(textOf(identifier)); place != appKit.running.end())
    found.push_back([self numbered:place->second]);
  return [[FakeArray alloc] initWith:found];
}
+ (instancetype)runningApplicationWithProcessIdentifier:(int)process {
  for (const auto& [name, number] : appKit.running)
    if (number == process) return [self numbered:process];
  return nil;
}
- (BOOL)terminate { note("terminate " + std::to_string(number)); return YES; }
- (int)processIdentifier { return number; }
- (NSString*)bundleIdentifier { return @"com.example.front"; }
- (NSString*)localizedName { return @"Front"; }
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
- (BOOL)accessibilityDisplayShouldReduceMotion { return appKit.reducesMotion; }
- (NSURL*)URLForApplicationWithBundleIdentifier:(NSString*)identifier {
  if (!appKit.installed) return [NSURL fileURLWithPath:identifier];
  const auto found = appKit.installed->find(textOf(identifier));
  return found != appKit.installed->end() ? [NSURL fileURLWithPath:[NSString stringWithUTF8String:found->second.c_str()]] : nil;
}
- (NSImage*)iconForFile:(NSString*)path { note("icon " + textOf(path)); return [[NSImage alloc] init]; }
- (void)openApplicationAtURL:(NSURL*)url configuration:(NSWorkspaceOpenConfiguration*)configuration
           completionHandler:(void (^)(NSRunningApplication*, NSError*))handler {
  std::string call = "start " + textOf(url.path);
  for (NSString* word in configuration.arguments) call += " " + textOf(word);
  for (NSString* name in configuration.environment.allKeys)
    call += " " + textOf(name) + "=" + textOf((NSString*)[configuration.environment objectForKey:name]);
  note(call + (configuration.activates ? "" : " inactive"));
  if (appKit.opened < 0 || handler == nil) return;
  if (appKit.opened > 0) handler([NSRunningApplication numbered:appKit.opened], nil);
  else handler(nil, [NSError errorWithDomain:NSCocoaErrorDomain code:4 userInfo:@{}]);
}
- (BOOL)openURL:(NSURL*)url { note("open " + textOf(url.absoluteString)); return YES; }
- (void)activateFileViewerSelectingURLs:(NSArray<NSURL*>*)files { note("reveal " + textOf(files.firstObject.path)); }
- (NSRunningApplication*)frontmostApplication { return frontmost == 0 ? nil : [NSRunningApplication numbered:frontmost]; }
@end

@implementation NSWorkspaceOpenConfiguration
+ (instancetype)configuration {
  NSWorkspaceOpenConfiguration* made = [[self alloc] init];
  made.activates = YES;
  return made;
}
@end

@implementation NSResponder
@end
@implementation NSView { __weak NSWindow* shownIn; }
- (NSWindow*)window { return shownIn; }
- (void)putInto:(NSWindow*)window { shownIn = window; }
- (instancetype)initWithFrame:(NSRect)frame { self.frame = frame; self.bounds = frame; return self; }
@end
@interface NSView (Fake)
- (void)putInto:(NSWindow*)window;
@end
@implementation NSImageView
@end
@implementation NSImage
- (instancetype)initWithCGImage:(CGImageRef)image size:(NSSize)size { note("image " + std::to_string(int(size.width))); return self; }
- (CGImageRef)CGImageForProposedRect:(NSRect*)rect context:(NSGraphicsContext*)context hints:(NSDictionary*)hints {
  note("picture of " + std::to_string(int(rect->size.width)));
  return appKit.hasIcon ? reinterpret_cast<CGImageRef>(8) : nullptr;
}
@end
@implementation NSColor
+ (NSColor*)clearColor { return [[NSColor alloc] init]; }
- (NSColor*)colorUsingColorSpace:(NSColorSpace*)space { note("to sRGB"); return appKit.isPattern ? nil : self; }
- (CGFloat)redComponent { return 1; }
- (CGFloat)greenComponent { return 0.5; }
- (CGFloat)blueComponent { return -0.01; }
@end
@implementation NSColorSpace
+ (NSColorSpace*)sRGBColorSpace { static NSColorSpace* space = [[NSColorSpace alloc] init]; return space; }
@end
@implementation NSColorSampler
- (void)showSamplerWithSelectionHandler:(void (^)(NSColor*))handler { appKit.sampled = handler; }
@end
@implementation NSSound { BOOL isPlaying; std::string name; }
+ (NSSound*)soundNamed:(NSSoundName)name {
  static NSSound* sound = [[NSSound alloc] init];
  sound->name = textOf(name);
  return sound;
}
- (BOOL)isPlaying { return isPlaying; }
- (BOOL)play { note("play " + name); isPlaying = YES; return YES; }
- (BOOL)stop { note("stop"); isPlaying = NO; return YES; }
@end
@implementation NSAppearance
- (NSAppearanceName)bestMatchFromAppearancesWithNames:(NSArray*)names { return appKit.isDark ? NSAppearanceNameDarkAqua : NSAppearanceNameAqua; }
@end
@implementation NSEvent
+ (NSPoint)mouseLocation { return NSMakePoint(205, 3); }
@end
@implementation NSSharingService
+ (NSSharingService*)sharingServiceNamed:(NSSharingServiceName)name { return [[NSSharingService alloc] init]; }
- (BOOL)canPerformWithItems:(NSArray*)items { return appKit.canShare; }
- (void)performWithItems:(NSArray*)items { note("share " + std::to_string(items.count)); appKit.sharing = self; }
@end
NSSharingServiceName const NSSharingServiceNameSendViaAirDrop = @"airdrop";
@implementation NSViewController
@end
@implementation NSScreen { CGFloat scale; }
+ (NSArray<NSScreen*>*)screens {
  NSScreen* a = [[NSScreen alloc] init]; a->scale = 1;
  NSScreen* b = [[NSScreen alloc] init]; b->scale = 2;
  return [[FakeArray alloc] initWith:{a, b}];
}
+ (NSScreen*)mainScreen { return self.screens.firstObject; }
- (NSRect)frame { return NSMakeRect(0, 0, 1440, 900); }
- (NSRect)visibleFrame { return NSMakeRect(0, 70, 1440, 805); }
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
__weak NSPopover* lastPopover = nil;
@implementation NSPopover { BOOL isShown; NSWindow* window; }
- (instancetype)init { lastPopover = self; return self; }
- (BOOL)isShown { return isShown; }
- (void)showRelativeToRect:(NSRect)rect ofView:(NSView*)view preferredEdge:(NSRectEdge)edge {
  note("popover " + std::to_string(int(rect.size.width)) + " edge " + std::to_string(edge));
  isShown = YES;
  window = [[NSWindow alloc] init];
  [self.contentViewController.view putInto:window];
}
- (void)performClose:(id)sender {
  note("perform close");
  [self close];
  [self.delegate popoverDidClose:(NSNotification*)nil];
}
- (void)close {
  isShown = NO;
  window = nil;
}
@end
@implementation NSApplication { NSDockTile* tile; }
+ (NSApplication*)sharedApplication { static NSApplication* shared = [[NSApplication alloc] init]; return shared; }
- (NSAppearance*)effectiveAppearance { return [[NSAppearance alloc] init]; }
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

// A bitmap's first bytes are filled, as something drawn would.
struct CGContext { unsigned char* data; size_t size; };
extern "C" CGContextRef CGBitmapContextCreate(void* data, size_t width, size_t height, size_t bits, size_t row,
                                              CGColorSpaceRef space, uint32_t info) {
  note("bitmap " + std::to_string(width) + "x" + std::to_string(height) + " bits " + std::to_string(bits) + " form " + std::to_string(info));
  return space != nullptr && row >= width * 4 ? new CGContext{static_cast<unsigned char*>(data), row * height} : nullptr;
}
extern "C" void CGContextDrawImage(CGContextRef context, CGRect place, CGImageRef) {
  note("draw " + std::to_string(int(place.size.width)));
  std::fill(context->data, context->data + context->size, 0xff);
}
extern "C" void CGContextRelease(CGContextRef context) { note("bitmap released"); delete context; }
