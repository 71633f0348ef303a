#include "Tests/macOS/Fakes/MachineFakes.h"

#include "TavrinCore/Kinds/Fans/SMCValue.h"
#include "TavrinPlatform/macOS/Devices/AppleSMC.h"

#include <IOKit/ps/IOPowerSources.h>
#include <IOKit/pwr_mgt/IOPMLib.h>
#include <Security/Security.h>
#include <cstring>
#include <mach/mach.h>
#include <os/log.h>

MachineState machine;

using tavrin::SMCValue;
namespace smc = tavrin::smc;

static constexpr io_object_t service = 5;
static constexpr io_connect_t connection = 6;
static constexpr io_connect_t powerRoot = 7;

@implementation NSXPCListener
- (instancetype)initWithMachServiceName:(NSString*)name {
  note(std::string("listen as ") + name.UTF8String);
  machine.listener = self;
  return self;
}
- (void)setConnectionCodeSigningRequirement:(NSString*)requirement { note(std::string("require ") + requirement.UTF8String); }
- (void)activate { note("activate listener"); }
- (void)invalidate { note("invalidate listener"); }
@end

extern "C" {
// The run loop.
const CFRunLoopMode kCFRunLoopDefaultMode = CFSTR("default");
CFRunLoopRunResult CFRunLoopRunInMode(CFRunLoopMode mode, CFTimeInterval seconds, Boolean) {
  if (mode != kCFRunLoopDefaultMode || !machine.loopTurn) return kCFRunLoopRunFinished;
  return CFRunLoopRunResult(machine.loopTurn(seconds));
}

// The controller.
CFMutableDictionaryRef IOServiceMatching(const char* name) {
  NSMutableDictionary* made = [NSMutableDictionary dictionary];
  made[@"class"] = [NSString stringWithUTF8String:name];
  return (CFMutableDictionaryRef)CFBridgingRetain(made);
}
io_service_t IOServiceGetMatchingService(mach_port_t, CFDictionaryRef matching) {
  NSDictionary* wanted = CFBridgingRelease(matching);
  const bool isThere = !machine.smc.empty() && [(NSString*)wanted[@"class"] isEqualToString:@"AppleSMC"];
  return isThere ? service : 0;
}
kern_return_t IOServiceGetMatchingServices(mach_port_t, CFDictionaryRef matching, io_iterator_t* found) {
  CFRelease(matching);
  *found = 0;
  return KERN_SUCCESS;
}
io_object_t IOIteratorNext(io_iterator_t) { return 0; }
kern_return_t IOObjectRelease(io_object_t) { return KERN_SUCCESS; }
CFTypeRef IORegistryEntryCreateCFProperty(io_registry_entry_t, CFStringRef, CFAllocatorRef, IOOptionBits) { return nullptr; }
mach_port_t mach_task_self_ = 1;
kern_return_t IOServiceOpen(io_service_t, task_port_t, uint32_t, io_connect_t* made) {
  ++machine.connections;
  *made = connection;
  return KERN_SUCCESS;
}
kern_return_t IOServiceClose(io_connect_t closed) {
  if (closed == connection) --machine.connections;
  else note("close " + std::to_string(closed));
  return KERN_SUCCESS;
}
kern_return_t IOConnectCallStructMethod(mach_port_t, uint32_t, const void* input, size_t, void* output, size_t*) {
  smc::Message message;
  std::memcpy(&message, input, sizeof message);
  const auto found = machine.smc.find(SMCValue::name(message.key));
  message.result = found == machine.smc.end() ? smc::keyNotFound : smc::success;
  if (found != machine.smc.end()) {
    auto& [type, bytes] = found->second;
    if (message.command == smc::Command::keyInfo) message.info = {std::uint32_t(bytes.size()), *SMCValue::code(type), 0};
    else if (message.command == smc::Command::readValue) std::copy(bytes.begin(), bytes.end(), message.bytes);
    else bytes.assign(message.bytes, message.bytes + message.info.size);
  }
  std::memcpy(output, &message, sizeof message);
  return KERN_SUCCESS;
}

// Sleep.
io_connect_t IORegisterForSystemPower(void* context, IONotificationPortRef* port, IOServiceInterestCallback callback, io_object_t* notifier) {
  if (!machine.hasPowerNotices) return 0;
  machine.power = callback;
  machine.powerContext = context;
  *port = reinterpret_cast<IONotificationPortRef>(8);
  *notifier = 9;
  return powerRoot;
}
IOReturn IODeregisterForSystemPower(io_object_t* notifier) {
  note("no more of sleep " + std::to_string(*notifier));
  machine.power = nullptr;
  return KERN_SUCCESS;
}
IOReturn IOAllowPowerChange(io_connect_t root, intptr_t notification) {
  note("allow " + std::to_string(notification) + (root == powerRoot ? "" : " of nobody"));
  return KERN_SUCCESS;
}
CFRunLoopSourceRef IONotificationPortGetRunLoopSource(IONotificationPortRef) { return reinterpret_cast<CFRunLoopSourceRef>(4); }
void IONotificationPortDestroy(IONotificationPortRef) { note("destroy port"); }

// What is not here.
const mach_port_t kIOMainPortDefault = 0;
void CFRunLoopSourceInvalidate(CFRunLoopSourceRef) {}
os_log_t os_log_create(const char*, const char*) { return nil; }
mach_port_t mach_host_self() { return 2; }
kern_return_t mach_port_deallocate(task_t, mach_port_name_t) { return KERN_SUCCESS; }
kern_return_t host_page_size(host_t, vm_size_t*) { return KERN_FAILURE; }
kern_return_t host_statistics(host_t, host_flavor_t, host_info_t, mach_msg_type_number_t*) { return KERN_FAILURE; }
kern_return_t host_statistics64(host_t, host_flavor_t, host_info64_t, mach_msg_type_number_t*) { return KERN_FAILURE; }
int sysctlbyname(const char*, void*, size_t*, void*, size_t) { return -1; }
CFTypeRef IOPSCopyPowerSourcesInfo() { return nullptr; }
CFArrayRef IOPSCopyPowerSourcesList(CFTypeRef) { return nullptr; }
CFDictionaryRef IOPSGetPowerSourceDescription(CFTypeRef, CFTypeRef) { return nullptr; }
CFRunLoopSourceRef IOPSNotificationCreateRunLoopSource(IOPowerSourceCallbackType, void*) { return nullptr; }
OSStatus SecItemCopyMatching(CFDictionaryRef, CFTypeRef*) { return errSecItemNotFound; }
OSStatus SecItemAdd(CFDictionaryRef, CFTypeRef*) { return errSecInteractionNotAllowed; }
OSStatus SecKeychainSetUserInteractionAllowed(Boolean) { return errSecSuccess; }
OSStatus SecKeychainGetUserInteractionAllowed(Boolean*) { return errSecSuccess; }
OSStatus SecKeychainGetStatus(SecKeychainRef, SecKeychainStatus*) { return errSecNoDefaultKeychain; }
const CFStringRef kSecClass = CFSTR("class"), kSecClassGenericPassword = CFSTR("genp"), kSecAttrService = CFSTR("svce"),
                  kSecAttrAccount = CFSTR("acct"), kSecReturnData = CFSTR("r_Data"), kSecMatchLimit = CFSTR("m_Limit"),
                  kSecMatchLimitOne = CFSTR("m_LimitOne"), kSecValueData = CFSTR("v_Data"), kSecAttrAccessible = CFSTR("pdmn"),
                  kSecAttrAccessibleAfterFirstUnlock = CFSTR("ck");
CFPropertyListRef CFPreferencesCopyAppValue(CFStringRef, CFStringRef) { return nullptr; }
void CFPreferencesSetAppValue(CFStringRef, CFPropertyListRef, CFStringRef) {}
CFDataRef CFPropertyListCreateData(CFAllocatorRef, CFPropertyListRef, CFPropertyListFormat, CFOptionFlags, CFErrorRef*) { return nullptr; }
CFPropertyListRef CFPropertyListCreateWithData(CFAllocatorRef, CFDataRef, CFOptionFlags, CFPropertyListFormat*, CFErrorRef*) { return nullptr; }
CFDataRef CFDataCreate(CFAllocatorRef, const UInt8*, CFIndex) { return nullptr; }
const UInt8* CFDataGetBytePtr(CFDataRef) { return nullptr; }
CFIndex CFDataGetLength(CFDataRef) { return 0; }
CFTypeID CFDataGetTypeID() { return 31; }
CFTypeID CFDictionaryGetTypeID() { return 32; }
CFTypeID CFStringGetTypeID() { return 33; }
CFIndex CFStringGetLength(CFStringRef) { return 0; }
CFIndex CFStringGetMaximumSizeForEncoding(CFIndex, CFStringEncoding) { return -1; }
Boolean CFStringGetCString(CFStringRef, char*, CFIndex, CFStringEncoding) { return false; }
CFIndex CFArrayGetCount(CFArrayRef) { return 0; }
const void* CFArrayGetValueAtIndex(CFArrayRef, CFIndex) { return nullptr; }
}
