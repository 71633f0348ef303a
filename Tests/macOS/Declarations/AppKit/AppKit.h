#pragma once
#include <Foundation/Foundation.h>
#ifdef __OBJC__
#pragma clang assume_nonnull begin

/// Everything here belongs to the main thread unless the documentation says otherwise.

@class NSWindow, NSDockTile, NSApplication, NSScreen, NSRunningApplication;

@interface NSResponder : NSObject
@property(readonly) BOOL acceptsFirstResponder;
@end
@interface NSView : NSResponder
- (instancetype)initWithFrame:(NSRect)frame;
@property NSRect frame;
@property NSRect bounds;
@property(copy) NSArray<NSView*>* subviews;
@property(nullable, readonly) NSWindow* window;
- (void)addSubview:(NSView*)view;
- (void)setFrameSize:(NSSize)size;
@end
@interface NSImage : NSObject
- (instancetype)initWithCGImage:(CGImageRef)image size:(NSSize)size;
@end
typedef NS_ENUM(NSUInteger, NSImageScaling){NSImageScaleProportionallyDown = 0,
                                            NSImageScaleAxesIndependently = 1,
                                            NSImageScaleNone = 2};
@interface NSImageView : NSView
@property(nullable, strong) NSImage* image;
@property NSImageScaling imageScaling;
@end
@interface NSColor : NSObject
@property(class, readonly, strong) NSColor* clearColor;
@end
@interface NSViewController : NSResponder
@property(strong) NSView* view;
@end
@interface NSScreen : NSObject
@property(class, readonly, copy) NSArray<NSScreen*>* screens;
@property(class, readonly, strong, nullable) NSScreen* mainScreen;
@property(readonly) NSRect frame;
@property(readonly) NSRect visibleFrame;
@property(readonly) CGFloat backingScaleFactor;
@end

@interface NSDockTile : NSObject
@property(readonly) NSSize size;
@property(nullable, strong) NSView* contentView;
@property(nullable, copy) NSString* badgeLabel;
- (void)display;
@end

typedef NS_OPTIONS(NSUInteger, NSWindowStyleMask){NSWindowStyleMaskBorderless = 0,
                                                  NSWindowStyleMaskNonactivatingPanel = 1 << 7};
typedef NS_ENUM(NSUInteger, NSBackingStoreType){NSBackingStoreBuffered = 2};
typedef NS_OPTIONS(NSUInteger, NSWindowCollectionBehavior){
    NSWindowCollectionBehaviorCanJoinAllSpaces = 1 << 0,
    NSWindowCollectionBehaviorIgnoresCycle = 1 << 6,
    NSWindowCollectionBehaviorFullScreenAuxiliary = 1 << 8};
typedef NSInteger NSWindowLevel;
@interface NSWindow : NSResponder
- (instancetype)initWithContentRect:(NSRect)rect
                          styleMask:(NSWindowStyleMask)style
                            backing:(NSBackingStoreType)backing
                              defer:(BOOL)defers;
@property(nullable, strong) NSView* contentView;
@property(getter=isOpaque) BOOL opaque;
@property(null_resettable, copy) NSColor* backgroundColor;
@property NSWindowLevel level;
@property NSWindowCollectionBehavior collectionBehavior;
@property BOOL ignoresMouseEvents;
@property BOOL hasShadow;
@property(getter=isReleasedWhenClosed) BOOL releasedWhenClosed;
- (void)setFrameOrigin:(NSPoint)origin;
- (void)orderFrontRegardless;
- (void)orderOut:(nullable id)sender;
- (void)makeKeyWindow;
- (BOOL)makeFirstResponder:(nullable NSResponder*)responder;
@end
@interface NSPanel : NSWindow
@end

@class NSPopover;
@protocol NSPopoverDelegate <NSObject>
@optional
- (void)popoverDidClose:(NSNotification*)notification;
- (BOOL)popoverShouldDetach:(NSPopover*)popover;
@end
typedef NS_ENUM(NSInteger, NSPopoverBehavior){NSPopoverBehaviorApplicationDefined = 0,
                                              NSPopoverBehaviorTransient = 1,
                                              NSPopoverBehaviorSemitransient = 2};
@interface NSPopover : NSResponder
@property(nullable, weak) id<NSPopoverDelegate> delegate;
@property NSPopoverBehavior behavior;
@property BOOL animates;
@property(nullable, strong) NSViewController* contentViewController;
@property NSSize contentSize;
@property(readonly, getter=isShown) BOOL shown;
- (void)showRelativeToRect:(NSRect)rect ofView:(NSView*)view preferredEdge:(NSRectEdge)edge;
- (void)performClose:(nullable id)sender;
- (void)close;
@end

typedef NS_OPTIONS(NSUInteger, NSApplicationActivationOptions){
    NSApplicationActivateAllWindows = 1 << 0};
typedef NS_ENUM(NSInteger, NSApplicationActivationPolicy){
    NSApplicationActivationPolicyRegular = 0, NSApplicationActivationPolicyAccessory = 1,
    NSApplicationActivationPolicyProhibited = 2};
@interface NSRunningApplication : NSObject
@property(class, readonly) NSRunningApplication* currentApplication;
@property(readonly) int processIdentifier;
@property(nullable, readonly, copy) NSString* bundleIdentifier;
@property(nullable, readonly, copy) NSString* localizedName;
@property(readonly, getter=isTerminated) BOOL terminated;
- (BOOL)activateWithOptions:(NSApplicationActivationOptions)options;
@end
@interface NSWorkspace : NSObject
@property(class, readonly, strong) NSWorkspace* sharedWorkspace;
@property(nullable, readonly, strong) NSRunningApplication* frontmostApplication;
@property(readonly, strong) NSNotificationCenter* notificationCenter;
@end
extern NSNotificationName const NSWorkspaceScreensDidSleepNotification;
extern NSNotificationName const NSWorkspaceScreensDidWakeNotification;

typedef NS_ENUM(NSUInteger, NSRequestUserAttentionType){NSCriticalRequest = 0,
                                                        NSInformationalRequest = 10};
typedef NS_ENUM(NSUInteger, NSApplicationDelegateReply){NSApplicationDelegateReplySuccess = 0,
                                                        NSApplicationDelegateReplyCancel = 1,
                                                        NSApplicationDelegateReplyFailure = 2};
@protocol NSApplicationDelegate <NSObject>
@optional
- (void)applicationDidFinishLaunching:(NSNotification*)notification;
- (void)applicationDidResignActive:(NSNotification*)notification;
- (BOOL)applicationShouldHandleReopen:(NSApplication*)sender hasVisibleWindows:(BOOL)flag;
- (void)application:(NSApplication*)sender openFiles:(NSArray<NSString*>*)names;
- (BOOL)applicationSupportsSecureRestorableState:(NSApplication*)app API_SINCE(12.0);
@end
@interface NSApplication : NSResponder
@property(class, readonly, strong) NSApplication* sharedApplication;
@property(nullable, weak) id<NSApplicationDelegate> delegate;
@property(readonly, strong) NSDockTile* dockTile;
@property(readonly, getter=isActive) BOOL active;
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)policy;
- (NSInteger)requestUserAttention:(NSRequestUserAttentionType)type;
- (void)cancelUserAttentionRequest:(NSInteger)request;
- (void)replyToOpenOrPrint:(NSApplicationDelegateReply)reply;
- (void)activate API_SINCE(14.0);
- (void)activateIgnoringOtherApps:(BOOL)ignores API_GONE(10.0, 14.0);
@end

#pragma clang assume_nonnull end
#endif

#include <AppKit/NSAppearance.h>
#include <AppKit/NSColorSampler.h>
#include <AppKit/NSColorSpace.h>
#include <AppKit/NSEvent.h>
#include <AppKit/NSImagePixels.h>
#include <AppKit/NSPasteboard.h>
#include <AppKit/NSRunningApplication.h>
#include <AppKit/NSSharingService.h>
#include <AppKit/NSSound.h>
#include <AppKit/NSWorkspace.h>
