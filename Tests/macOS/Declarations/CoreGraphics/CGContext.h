#pragma once
#include <CoreGraphics/CGColor.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma clang assume_nonnull begin

/// Pages: CGContext, CGBitmapContextCreate, CGImageAlphaInfo, CGBitmapInfo (Core Graphics).
typedef struct CGColorSpace* CGColorSpaceRef;
typedef struct CGContext* CGContextRef;
typedef enum CGImageAlphaInfo : uint32_t { kCGImageAlphaPremultipliedFirst = 2 } CGImageAlphaInfo;
typedef enum CGBitmapInfo : uint32_t { kCGBitmapByteOrder32Little = 2 << 12 } CGBitmapInfo;

/// Draws into `data`, which stays the caller's. Null for what it cannot draw in.
CGContextRef _Nullable CGBitmapContextCreate(void* _Nullable data, size_t width, size_t height,
                                             size_t bitsPerComponent, size_t bytesPerRow,
                                             CGColorSpaceRef _Nullable space, uint32_t info)
    CF_RETURNS_RETAINED;
void CGContextDrawImage(CGContextRef _Nullable context, struct CGRect place,
                        struct CGImage* _Nullable image);
void CGContextRelease(CGContextRef _Nullable context);

#pragma clang assume_nonnull end
#ifdef __cplusplus
}
#endif
