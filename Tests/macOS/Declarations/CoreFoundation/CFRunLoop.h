#pragma once
#include <CoreFoundation/CFBase.h>
/// Page: CFRunLoop, CFRunLoopSource (Core Foundation).
#ifdef __cplusplus
extern "C" {
#endif
#pragma clang assume_nonnull begin

typedef struct __CFRunLoop* CFRunLoopRef;
typedef struct __CFRunLoopSource* CFRunLoopSourceRef;
typedef CFStringRef CFRunLoopMode;
enum CFRunLoopRunResult : int32_t {
  kCFRunLoopRunFinished = 1, ///< no source and no timer in that mode: returned at once
  kCFRunLoopRunStopped = 2,
  kCFRunLoopRunTimedOut = 3,
  kCFRunLoopRunHandledSource = 4
};
typedef enum CFRunLoopRunResult CFRunLoopRunResult;

extern const CFRunLoopMode kCFRunLoopDefaultMode;
/// Includes the modes of event tracking and modal panels once AppKit runs.
extern const CFRunLoopMode kCFRunLoopCommonModes;

CFRunLoopRef CFRunLoopGetMain(void) CF_RETURNS_NOT_RETAINED;
/// Never null; makes one for the thread.
CFRunLoopRef CFRunLoopGetCurrent(void) CF_RETURNS_NOT_RETAINED;
/// Retains the source.
void CFRunLoopAddSource(CFRunLoopRef loop, CFRunLoopSourceRef source, CFRunLoopMode mode);
void CFRunLoopRemoveSource(CFRunLoopRef loop, CFRunLoopSourceRef source, CFRunLoopMode mode);
/// Also takes it out of every loop; no callback begins afterwards.
void CFRunLoopSourceInvalidate(CFRunLoopSourceRef source);
CFRunLoopRunResult CFRunLoopRunInMode(CFRunLoopMode mode, CFTimeInterval seconds,
                                      Boolean returnAfterSourceHandled);
/// May be called from any thread.
void CFRunLoopStop(CFRunLoopRef loop);
void CFRunLoopWakeUp(CFRunLoopRef loop);

#pragma clang assume_nonnull end
#ifdef __cplusplus
}
#endif
