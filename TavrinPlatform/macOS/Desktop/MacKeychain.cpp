#include "TavrinPlatform/macOS/Desktop/MacKeychain.h"

#include "TavrinPlatform/macOS/Base/CFRef.h"

#include <Security/Security.h>
#include <array>
#include <initializer_list>
#include <utility>

namespace tavrin {
namespace {

/// Keeps keychains from asking the user. The login keychain heeds nothing newer.
class Silence {
public:
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wdeprecated-declarations"
  Silence() {
    isKnown_ = SecKeychainGetUserInteractionAllowed(&wasAllowed_) == errSecSuccess;
    SecKeychainSetUserInteractionAllowed(false);
  }
  ~Silence() {
    if (isKnown_)
      SecKeychainSetUserInteractionAllowed(wasAllowed_);
  }
#pragma clang diagnostic pop
  Silence(const Silence&) = delete;
  Silence& operator=(const Silence&) = delete;

private:
  Boolean wasAllowed_ = true;
  bool isKnown_ = false;
};

/// The keychain would have asked the user.
bool wantsTheUser(OSStatus status) {
  return status == errSecInteractionNotAllowed || status == errSecInteractionRequired ||
         status == errSecAuthFailed;
}

#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wdeprecated-declarations"
bool isUnlocked() {
  SecKeychainStatus status = 0;
  return SecKeychainGetStatus(nullptr, &status) == errSecSuccess &&
         (status & kSecUnlockStateStatus) != 0;
}
#pragma clang diagnostic pop

struct Entry {
  CFStringRef key;
  CFTypeRef value;
};

CFRef<CFDictionaryRef> dictionary(std::initializer_list<Entry> entries) {
  std::array<const void*, 8> keys{};
  std::array<const void*, 8> values{};
  std::size_t count = 0;
  for (const auto& [key, value] : entries) {
    // Nothing stands for an attribute that could not be made, so that no other item is meant.
    if (value == nullptr)
      throw KeychainError(errSecParam);
    keys[count] = key;
    values[count++] = value;
  }
  CFRef<CFDictionaryRef> made(CFDictionaryCreate(
      kCFAllocatorDefault, keys.data(), values.data(), static_cast<CFIndex>(count),
      &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks));
  if (!made)
    throw KeychainError(errSecAllocate);
  return made;
}

} // namespace

std::optional<Data> MacKeychain::find(const std::string& service, const std::string& account) {
  const auto place = toCFText(service);
  const auto name = toCFText(account);
  const auto query = dictionary({{kSecClass, kSecClassGenericPassword},
                                 {kSecAttrService, place.get()},
                                 {kSecAttrAccount, name.get()},
                                 {kSecReturnData, kCFBooleanTrue},
                                 {kSecMatchLimit, kSecMatchLimitOne}});
  CFRef<CFTypeRef> result;
  OSStatus status = errSecSuccess;
  {
    const Silence silence;
    status = SecItemCopyMatching(query.get(), result.receive());
  }
  // An item of another build, or of another slot: the user alone can let this one read it. Asked
  // once, so that a refusal counts.
  if (wantsTheUser(status) && isUnlocked() && !std::exchange(hasAsked_, true))
    status = SecItemCopyMatching(query.get(), result.receive());
  if (status == errSecItemNotFound)
    return std::nullopt;
  if (status != errSecSuccess)
    throw KeychainError(status);
  if (!result || CFGetTypeID(result.get()) != CFDataGetTypeID())
    return std::nullopt;
  const auto data = static_cast<CFDataRef>(result.get());
  return Data::fromText({reinterpret_cast<const char*>(CFDataGetBytePtr(data)),
                         static_cast<std::size_t>(CFDataGetLength(data))});
}

void MacKeychain::add(const std::string& service, const std::string& account, const Data& secret) {
  const auto place = toCFText(service);
  const auto name = toCFText(account);
  const CFRef<CFDataRef> value(CFDataCreate(kCFAllocatorDefault, secret.bytes.data(),
                                            static_cast<CFIndex>(secret.bytes.size())));
  const auto attributes = dictionary({{kSecClass, kSecClassGenericPassword},
                                      {kSecAttrService, place.get()},
                                      {kSecAttrAccount, name.get()},
                                      {kSecValueData, value.get()},
                                      {kSecAttrAccessible, kSecAttrAccessibleAfterFirstUnlock}});
  const Silence silence;
  const OSStatus status = SecItemAdd(attributes.get(), nullptr);
  if (status != errSecSuccess)
    throw KeychainError(status);
}

} // namespace tavrin
