#pragma once
#include <CoreFoundation/CoreFoundation.h>
#include <CoreGraphics/CoreGraphics.h>

#ifdef __OBJC__
typedef bool BOOL;
#define YES __objc_yes
#define NO __objc_no
#define nil nullptr
#define Nil nullptr
typedef struct objc_selector* SEL;
typedef struct objc_class* Class;
typedef long NSInteger;
typedef unsigned long NSUInteger;
typedef CGRect NSRect;
typedef CGPoint NSPoint;
typedef CGSize NSSize;
typedef double NSTimeInterval;
/// In C++ the name of a set of options is that of its number type, so that they can be combined.
#define NS_OPTIONS(type, name) type name; enum __attribute__((flag_enum)) : type
#define NS_ENUM(type, name) enum name : type name; enum __attribute__((enum_extensibility(open))) name : type

#pragma clang assume_nonnull begin

static inline NSRect NSMakeRect(CGFloat x, CGFloat y, CGFloat w, CGFloat h) {
  return NSRect{{x, y}, {w, h}};
}
static inline NSPoint NSMakePoint(CGFloat x, CGFloat y) { return NSPoint{x, y}; }
static inline NSSize NSMakeSize(CGFloat w, CGFloat h) { return NSSize{w, h}; }
typedef NS_ENUM(NSUInteger, NSRectEdge){NSRectEdgeMinX = 0, NSRectEdgeMinY = 1, NSRectEdgeMaxX = 2,
                                        NSRectEdgeMaxY = 3};

@protocol NSObject
- (BOOL)isEqual:(nullable id)object;
- (BOOL)respondsToSelector:(SEL)selector;
- (Class)class;
- (instancetype)self;
- (BOOL)isKindOfClass:(Class)kind;
@end
@protocol NSCopying
@end

__attribute__((objc_root_class))
@interface NSObject <NSObject> {
  Class isa;
}
+ (instancetype)alloc;
+ (instancetype)new;
- (instancetype)init;
- (void)dealloc;
- (void)performSelectorOnMainThread:(SEL)selector
                         withObject:(nullable id)argument
                      waitUntilDone:(BOOL)waits;
@end

typedef struct {
  unsigned long state;
  id __unsafe_unretained _Nullable* _Nullable itemsPtr;
  unsigned long* _Nullable mutationsPtr;
  unsigned long extra[5];
} NSFastEnumerationState;
@protocol NSFastEnumeration
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id __unsafe_unretained _Nullable* _Nonnull)buffer
                                    count:(NSUInteger)count;
@end

typedef NS_ENUM(NSUInteger, NSStringEncoding){NSUTF8StringEncoding = 4};
@interface NSString : NSObject <NSCopying>
+ (nullable instancetype)stringWithUTF8String:(const char*)text;
- (nullable instancetype)initWithBytes:(const void*)bytes
                                length:(NSUInteger)length
                              encoding:(NSStringEncoding)encoding;
@property(readonly, nullable) const char* UTF8String __attribute__((objc_returns_inner_pointer));
@property(readonly, nullable) const char* fileSystemRepresentation
    __attribute__((objc_returns_inner_pointer));
@property(readonly) NSUInteger length;
- (BOOL)isEqualToString:(NSString*)other;
@end

@interface NSNumber : NSObject
+ (NSNumber*)numberWithInt:(int)value;
+ (NSNumber*)numberWithBool:(BOOL)value;
+ (NSNumber*)numberWithDouble:(double)value;
@property(readonly) double doubleValue;
@property(readonly) NSInteger integerValue;
@property(readonly) BOOL boolValue;
@end

@interface NSArray<__covariant Element> : NSObject <NSCopying, NSFastEnumeration>
+ (instancetype)arrayWithObjects:(const Element _Nonnull [_Nullable])objects count:(NSUInteger)count;
@property(readonly) NSUInteger count;
@property(nullable, readonly) Element firstObject;
- (Element)objectAtIndexedSubscript:(NSUInteger)index;
@end
@interface NSDictionary<__covariant Key, __covariant Value> : NSObject <NSCopying>
- (nullable Value)objectForKeyedSubscript:(Key)key;
@end
@interface NSData : NSObject
@property(readonly, nullable) const void* bytes __attribute__((objc_returns_inner_pointer));
@property(readonly) NSUInteger length;
@end
@interface NSURL : NSObject
+ (NSURL*)fileURLWithPath:(NSString*)path;
@property(nullable, readonly) NSString* path;
@end

typedef NSString* NSNotificationName __attribute__((swift_wrapper(struct)));
@interface NSNotification : NSObject
@property(readonly) NSNotificationName name;
@property(nullable, readonly) id object;
@end
@interface NSOperationQueue : NSObject
@property(class, readonly) NSOperationQueue* mainQueue;
@end
@interface NSNotificationCenter : NSObject
@property(class, readonly) NSNotificationCenter* defaultCenter;
- (void)addObserver:(id)observer
           selector:(SEL)selector
               name:(nullable NSNotificationName)name
             object:(nullable id)object;
- (id<NSObject>)addObserverForName:(nullable NSNotificationName)name
                            object:(nullable id)object
                             queue:(nullable NSOperationQueue*)queue
                        usingBlock:(void (^)(NSNotification* notification))block;
- (void)removeObserver:(id)observer;
@end

@interface NSProcessInfo : NSObject
@property(class, readonly) NSProcessInfo* processInfo;
@property(readonly) unsigned long long physicalMemory;
@property(readonly) int processIdentifier;
@end

#pragma clang assume_nonnull end
#endif

#ifdef __OBJC__
#include <Foundation/NSError.h>

#include <Foundation/NSAppleEventDescriptor.h>
#include <Foundation/NSAppleScript.h>
#include <Foundation/NSBundle.h>
#include <Foundation/NSDate.h>
#include <Foundation/NSDictionary.h>
#include <Foundation/NSDistributedNotificationCenter.h>
#include <Foundation/NSFileManager.h>
#include <Foundation/NSProcessInfo.h>
#include <Foundation/NSSet.h>
#include <Foundation/NSUserDefaults.h>
#include <Foundation/NSValues.h>
#include <Foundation/NSXPCConnection.h>
#endif
