#include "FakeCoreFoundation.h"
#include "FakeSystem.h"

#include <Security/Security.h>
#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <gtest/gtest.h>
#include <libproc.h>
#include <os/log.h>

using namespace tavrin;

namespace {

std::pair<std::string, std::string> itemOf(CFDictionaryRef attributes) {
  auto& system = fake::system();
  system.interactionAtCalls.push_back(system.interactionAllowed);
  system.lastAttributes.clear();
  for (const char* key : {"class", "svce", "acct", "r_Data", "m_Limit", "pdmn"}) {
    CFTypeRef value = fake::entryOf(attributes, key);
    if (value != nullptr)
      system.lastAttributes[key] =
          CFGetTypeID(value) == CFBooleanGetTypeID() ? "true" : fake::textOf(value);
  }
  return {system.lastAttributes["svce"], system.lastAttributes["acct"]};
}

struct Logger {
  std::string name;
};

} // namespace

extern "C" {
const CFStringRef kSecClass = fake::constant("class");
const CFStringRef kSecClassGenericPassword = fake::constant("genp");
const CFStringRef kSecAttrService = fake::constant("svce");
const CFStringRef kSecAttrAccount = fake::constant("acct");
const CFStringRef kSecReturnData = fake::constant("r_Data");
const CFStringRef kSecMatchLimit = fake::constant("m_Limit");
const CFStringRef kSecMatchLimitOne = fake::constant("m_LimitOne");
const CFStringRef kSecMatchLimitAll = fake::constant("m_LimitAll");
const CFStringRef kSecValueData = fake::constant("v_Data");
const CFStringRef kSecAttrAccessible = fake::constant("pdmn");
const CFStringRef kSecAttrAccessibleAfterFirstUnlock = fake::constant("ck");
const CFStringRef kSecAttrAccessibleWhenUnlocked = fake::constant("ak");
const CFStringRef kSecAttrLabel = fake::constant("labl");

OSStatus SecItemCopyMatching(CFDictionaryRef query, CFTypeRef* result) {
  auto& system = fake::system();
  const auto item = itemOf(query);
  if (system.keychainStatus != 0)
    return system.keychainStatus;
  const auto found = system.passwords.find(item);
  if (found == system.passwords.end())
    return errSecItemNotFound;
  if (system.keychainIsLocked || system.userLetsRead) {
    if (!system.interactionAllowed)
      return errSecInteractionNotAllowed;
    ++system.questions;
    if (!system.userLetsRead.value_or(true))
      return errSecUserCanceled;
  }
  *result = system.keychainGivesOtherThanData ? fake::text("no data") : fake::data(found->second);
  return errSecSuccess;
}
OSStatus SecItemAdd(CFDictionaryRef attributes, CFTypeRef*) {
  auto& system = fake::system();
  const auto item = itemOf(attributes);
  if (system.keychainStatus != 0)
    return system.keychainStatus;
  CFTypeRef value = fake::entryOf(attributes, "v_Data");
  return value != nullptr && system.passwords.emplace(item, fake::textOf(value)).second
             ? errSecSuccess
             : errSecDuplicateItem;
}
OSStatus SecKeychainSetUserInteractionAllowed(Boolean isAllowed) {
  fake::system().interactionAllowed = isAllowed;
  return errSecSuccess;
}
OSStatus SecKeychainGetUserInteractionAllowed(Boolean* isAllowed) {
  *isAllowed = fake::system().interactionAllowed;
  return errSecSuccess;
}
OSStatus SecKeychainGetStatus(SecKeychainRef, SecKeychainStatus* status) {
  *status = kSecReadPermStatus | (fake::system().keychainIsLocked ? 0U : kSecUnlockStateStatus);
  return errSecSuccess;
}

Boolean CFPreferencesAppSynchronize(CFStringRef domain) {
  auto& system = fake::system();
  if (system.preferencesRefuse)
    return false;
  for (const auto& [key, value] : system.unwritten[fake::textOf(domain)])
    system.preferences[fake::textOf(domain)].insert_or_assign(key, value);
  system.unwritten.erase(fake::textOf(domain));
  return true;
}
CFPropertyListRef CFPreferencesCopyAppValue(CFStringRef key, CFStringRef domain) {
  auto& system = fake::system();
  for (auto* store : {&system.unwritten, &system.preferences}) {
    const auto& entries = (*store)[fake::textOf(domain)];
    if (const auto found = entries.find(fake::textOf(key)); found != entries.end())
      return fake::objectOf(found->second);
  }
  return nullptr;
}
void CFPreferencesSetAppValue(CFStringRef key, CFPropertyListRef value, CFStringRef domain) {
  fake::system().unwritten[fake::textOf(domain)].insert_or_assign(fake::textOf(key),
                                                                  fake::listOf(value));
}

int proc_listpids(uint32_t type, uint32_t, void* buffer, int size) {
  EXPECT_EQ(type, std::uint32_t(PROC_ALL_PIDS));
  const auto& all = fake::system().processes;
  const int needed = int(all.size() * sizeof(pid_t));
  if (buffer == nullptr)
    return needed;
  std::vector<pid_t> numbers;
  for (const auto& process : all)
    numbers.push_back(pid_t(process.pbi_pid));
  std::memcpy(buffer, numbers.data(), std::size_t(std::min(size, needed)));
  return std::min(size, needed);
}
int proc_pidinfo(int pid, int flavour, uint64_t, void* buffer, int size) {
  EXPECT_EQ(flavour, PROC_PIDTBSDINFO);
  EXPECT_EQ(size, 136);
  for (const auto& process : fake::system().processes)
    if (int(process.pbi_pid) == pid && process.pbi_uid != 0) {
      std::memcpy(buffer, &process, 136);
      return 136;
    }
  errno = EPERM;
  return 0;
}

os_log_t os_log_create(const char* subsystem, const char* category) {
  // One object for the same two texts, for ever.
  static std::map<std::string, Logger> all;
  const auto name = std::string(subsystem) + "/" + category;
  return reinterpret_cast<os_log_t>(&all.try_emplace(name, Logger{name}).first->second);
}
os_log_t tavrin_os_log_default() { return nullptr; }
void os_release(void*) {}
void tavrin_os_log(os_log_t log, os_log_type_t type, const char* format, ...) {
  EXPECT_STREQ(format, "%{public}s");
  va_list arguments;
  va_start(arguments, format);
  fake::system().log.push_back(reinterpret_cast<Logger*>(log)->name + " " + std::to_string(type) +
                               " " + va_arg(arguments, const char*));
  va_end(arguments);
}
}
