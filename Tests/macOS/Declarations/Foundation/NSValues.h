// What the adapters need of NSURL, NSString, NSNotification, NSObject beyond Foundation.h.
#include <Foundation/NSError.h>
#ifndef TAVRIN_SHIM_NSVALUES
#define TAVRIN_SHIM_NSVALUES
#ifdef __OBJC__
#pragma clang assume_nonnull begin

@interface NSURL (Parts)
+ (nullable instancetype)URLWithString:(NSString*)text;
@property(nullable, readonly, copy) NSString* absoluteString;
@property(readonly, getter=isFileURL) BOOL fileURL;
@property(nullable, readonly, copy) NSString* lastPathComponent;
@end
@interface NSNotification (UserInfo)
@property(nullable, readonly, copy) NSDictionary* userInfo;
@end
// "ComparisonResult", "localizedCaseInsensitiveCompare(_:)".
typedef NS_ENUM(NSInteger, NSComparisonResult){NSOrderedAscending = -1, NSOrderedSame = 0,
                                               NSOrderedDescending = 1};
@interface NSString (Comparing)
- (NSComparisonResult)localizedCaseInsensitiveCompare:(NSString*)other;
@end
@interface NSString (Data)
- (nullable NSData*)dataUsingEncoding:(NSStringEncoding)encoding;
@end

// "NSMouseInRect(_:_:_:)"
extern "C" BOOL NSMouseInRect(NSPoint point, NSRect rect, BOOL flipped);

// "NSKeyValueObserving".
typedef NSString* NSKeyValueChangeKey;
typedef NS_OPTIONS(NSUInteger, NSKeyValueObservingOptions){NSKeyValueObservingOptionNew = 1 << 0,
                                                           NSKeyValueObservingOptionOld = 1 << 1,
                                                           NSKeyValueObservingOptionInitial = 1 << 2};
@interface NSObject (KeyValueObserving)
- (void)addObserver:(NSObject*)observer
         forKeyPath:(NSString*)path
            options:(NSKeyValueObservingOptions)options
            context:(nullable void*)context;
- (void)removeObserver:(NSObject*)observer
            forKeyPath:(NSString*)path
               context:(nullable void*)context;
/// To be overridden; call super for what is not yours.
- (void)observeValueForKeyPath:(nullable NSString*)path
                      ofObject:(nullable id)object
                        change:(nullable NSDictionary<NSKeyValueChangeKey, id>*)change
                       context:(nullable void*)context;
@end

#pragma clang assume_nonnull end
#endif
#endif
