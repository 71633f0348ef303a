#pragma once
#include <CoreFoundation/CFBase.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma clang assume_nonnull begin

/// Pages: CFPropertyList, CFPropertyListFormat, CFPropertyListMutabilityOptions, CFData, CFError.
typedef struct CF_BRIDGED(NSError) __CFError* CFErrorRef;

typedef CFIndex CFPropertyListFormat;
enum : CFPropertyListFormat {
  kCFPropertyListOpenStepFormat = 1, // read only, never written
  kCFPropertyListXMLFormat_v1_0 = 100,
  kCFPropertyListBinaryFormat_v1_0 = 200,
};
enum : CFOptionFlags {
  kCFPropertyListImmutable = 0,
  kCFPropertyListMutableContainers = 1 << 0,
  kCFPropertyListMutableContainersAndLeaves = 1 << 1,
};
/// Codes of the error (they are those of the Cocoa domain).
enum : CFIndex {
  kCFPropertyListReadCorruptError = 3840,
  kCFPropertyListReadUnknownVersionError = 3841,
  kCFPropertyListReadStreamError = 3842,
  kCFPropertyListWriteStreamError = 3851,
};
/// Null on failure; the error, where asked for, belongs to the caller too.
CFPropertyListRef _Nullable CFPropertyListCreateWithData(
    CFAllocatorRef _Nullable allocator, CFDataRef data, CFOptionFlags options,
    CFPropertyListFormat* _Nullable format,
    CFErrorRef _Nullable* _Nullable CF_RETURNS_RETAINED error)
    CF_RETURNS_RETAINED API_SINCE(10.6);
/// `options` is 0.
CFDataRef _Nullable CFPropertyListCreateData(CFAllocatorRef _Nullable allocator,
                                             CFPropertyListRef list, CFPropertyListFormat format,
                                             CFOptionFlags options,
                                             CFErrorRef _Nullable* _Nullable CF_RETURNS_RETAINED error)
    CF_RETURNS_RETAINED API_SINCE(10.6);
Boolean CFPropertyListIsValid(CFPropertyListRef list, CFPropertyListFormat format);

CFDataRef _Nullable CFDataCreate(CFAllocatorRef _Nullable allocator,
                                 const uint8_t* _Nullable bytes, CFIndex length)
    CF_RETURNS_RETAINED;
CFIndex CFDataGetLength(CFDataRef data);
const uint8_t* _Nullable CFDataGetBytePtr(CFDataRef data);

CFIndex CFErrorGetCode(CFErrorRef error);
CFStringRef _Nullable CFErrorCopyDescription(CFErrorRef error) CF_RETURNS_RETAINED;

CFTypeID CFDataGetTypeID(void);
CFTypeID CFDateGetTypeID(void);

#pragma clang assume_nonnull end
#ifdef __cplusplus
}
#endif
