#pragma once
#include <CoreFoundation/CFArray.h>
#include <CoreFoundation/CFString.h>
#include <CoreServices/AppleEvents.h>
#include <dispatch/dispatch.h>
/// Page: File System Events (Core Services). On a Mac include this umbrella, never the part alone.
#ifdef __cplusplus
extern "C" {
#endif
#pragma clang assume_nonnull begin

typedef struct __FSEventStream* FSEventStreamRef;
typedef const struct __FSEventStream* ConstFSEventStreamRef;
typedef uint64_t FSEventStreamEventId;
typedef uint32_t FSEventStreamCreateFlags;
typedef uint32_t FSEventStreamEventFlags;

enum : FSEventStreamEventId { kFSEventStreamEventIdSinceNow = 0xffffffffffffffffULL };
enum : FSEventStreamCreateFlags {
  kFSEventStreamCreateFlagNone = 0,
  kFSEventStreamCreateFlagUseCFTypes = 0x01, ///< paths come as CFArray of CFString
  kFSEventStreamCreateFlagNoDefer = 0x02,    ///< the first event at once, the latency afterwards
  kFSEventStreamCreateFlagWatchRoot = 0x04,  ///< tells when the way to a watched path changes
  kFSEventStreamCreateFlagIgnoreSelf = 0x08,
  kFSEventStreamCreateFlagFileEvents = 0x10 ///< one event a file instead of one a folder
};
enum : FSEventStreamEventFlags {
  kFSEventStreamEventFlagNone = 0,
  kFSEventStreamEventFlagMustScanSubDirs = 0x01,
  kFSEventStreamEventFlagUserDropped = 0x02,
  kFSEventStreamEventFlagKernelDropped = 0x04,
  kFSEventStreamEventFlagEventIdsWrapped = 0x08,
  kFSEventStreamEventFlagHistoryDone = 0x10,
  kFSEventStreamEventFlagRootChanged = 0x20,
  kFSEventStreamEventFlagMount = 0x40,
  kFSEventStreamEventFlagUnmount = 0x80,
  /// Those below come with FileEvents alone.
  kFSEventStreamEventFlagItemCreated = 0x100,
  kFSEventStreamEventFlagItemRemoved = 0x200,
  kFSEventStreamEventFlagItemInodeMetaMod = 0x400,
  kFSEventStreamEventFlagItemRenamed = 0x800,
  kFSEventStreamEventFlagItemModified = 0x1000,
  kFSEventStreamEventFlagItemFinderInfoMod = 0x2000,
  kFSEventStreamEventFlagItemChangeOwner = 0x4000,
  kFSEventStreamEventFlagItemXattrMod = 0x8000,
  kFSEventStreamEventFlagItemIsFile = 0x10000,
  kFSEventStreamEventFlagItemIsDir = 0x20000,
  kFSEventStreamEventFlagItemIsSymlink = 0x40000
};

/// `paths` is `char**`, or a CFArrayRef with UseCFTypes; all three lists last as long as the call.
typedef void (*FSEventStreamCallback)(ConstFSEventStreamRef stream, void* _Nullable info,
                                      size_t count, void* paths,
                                      const FSEventStreamEventFlags* _Nonnull flags,
                                      const FSEventStreamEventId* _Nonnull ids);

/// Copied by FSEventStreamCreate.
struct FSEventStreamContext {
  CFIndex version; ///< 0
  void* _Nullable info;
  CFAllocatorRetainCallBack _Nullable retain;
  CFAllocatorReleaseCallBack _Nullable release;
  CFAllocatorCopyDescriptionCallBack _Nullable copyDescription;
};
typedef struct FSEventStreamContext FSEventStreamContext;

/// One reference, to be given back by FSEventStreamRelease: no CF object, CFRelease is not for it.
FSEventStreamRef _Nullable
FSEventStreamCreate(CFAllocatorRef _Nullable allocator, FSEventStreamCallback callback,
                    FSEventStreamContext* _Nullable context, CFArrayRef paths,
                    FSEventStreamEventId since, CFTimeInterval latency,
                    FSEventStreamCreateFlags flags) API_SINCE(10.5);
void FSEventStreamSetDispatchQueue(FSEventStreamRef stream, dispatch_queue_t _Nullable queue)
    API_SINCE(10.6);
Boolean FSEventStreamStart(FSEventStreamRef stream) API_SINCE(10.5);
void FSEventStreamFlushSync(FSEventStreamRef stream) API_SINCE(10.5);
void FSEventStreamStop(FSEventStreamRef stream) API_SINCE(10.5);
void FSEventStreamInvalidate(FSEventStreamRef stream) API_SINCE(10.5);
void FSEventStreamRelease(FSEventStreamRef stream) API_SINCE(10.5);

#pragma clang assume_nonnull end
#ifdef __cplusplus
}
#endif
