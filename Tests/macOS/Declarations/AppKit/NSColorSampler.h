#include <AppKit/NSColorSpace.h>
#ifndef TAVRIN_SHIM_NSCOLORSAMPLER
#define TAVRIN_SHIM_NSCOLORSAMPLER
#ifdef __OBJC__
#pragma clang assume_nonnull begin

// "NSColorSampler". Retained by the system until the block is called, on the main thread.
API_SINCE(10.15)
@interface NSColorSampler : NSObject
- (void)showSamplerWithSelectionHandler:(void (^)(NSColor* _Nullable colour))handler;
@end

#pragma clang assume_nonnull end
#endif
#endif
