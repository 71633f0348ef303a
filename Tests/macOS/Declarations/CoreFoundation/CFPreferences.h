#pragma once
#include <CoreFoundation/CFArray.h>
#include <CoreFoundation/CFString.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma clang assume_nonnull begin

/// Pages: Preferences Utilities, CFPreferencesCopyKeyList, CFPreferencesAppValueIsForced.
extern const CFStringRef kCFPreferencesCurrentApplication;
extern const CFStringRef kCFPreferencesAnyApplication;
extern const CFStringRef kCFPreferencesCurrentUser;
extern const CFStringRef kCFPreferencesAnyUser;
extern const CFStringRef kCFPreferencesCurrentHost;
extern const CFStringRef kCFPreferencesAnyHost;

Boolean CFPreferencesAppSynchronize(CFStringRef domain);
CFPropertyListRef _Nullable CFPreferencesCopyAppValue(CFStringRef key, CFStringRef domain)
    CF_RETURNS_RETAINED;
/// A null value removes the key.
void CFPreferencesSetAppValue(CFStringRef key, CFPropertyListRef _Nullable value,
                              CFStringRef domain);
Boolean CFPreferencesAppValueIsForced(CFStringRef key, CFStringRef domain);
Boolean CFPreferencesGetAppBooleanValue(CFStringRef key, CFStringRef domain,
                                        Boolean* _Nullable isThereAndValid);
CFIndex CFPreferencesGetAppIntegerValue(CFStringRef key, CFStringRef domain,
                                        Boolean* _Nullable isThereAndValid);
CFArrayRef _Nullable CFPreferencesCopyKeyList(CFStringRef domain, CFStringRef user, CFStringRef host)
    CF_RETURNS_RETAINED;

#pragma clang assume_nonnull end
#ifdef __cplusplus
}
#endif
