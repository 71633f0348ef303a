#pragma once
#include <CoreFoundation/CoreFoundation.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma clang assume_nonnull begin

typedef double CGFloat;
struct CGPoint { CGFloat x; CGFloat y; };
struct CGSize { CGFloat width; CGFloat height; };
struct CGRect { struct CGPoint origin; struct CGSize size; };
typedef struct CGPoint CGPoint;
typedef struct CGSize CGSize;
typedef struct CGRect CGRect;
typedef struct CGImage* CGImageRef;
void CGImageRelease(CGImageRef _Nullable image);

typedef int32_t CGWindowLevel;
typedef int32_t CGWindowLevelKey;
enum { kCGDockWindowLevelKey = 7 };
CGWindowLevel CGWindowLevelForKey(CGWindowLevelKey key);

#pragma clang assume_nonnull end
#ifdef __cplusplus
}
#endif

#include <CoreGraphics/CGColor.h>
#include <CoreGraphics/CGContext.h>
#include <CoreGraphics/CGEvent.h>
#include <CoreGraphics/CGSession.h>
