#include "TavrinPlatform/macOS/Dock/MacPreferencesService.h"

#include "TavrinPlatform/macOS/Base/CFRef.h"

namespace tavrin {
namespace {

/// Both sides know the binary form, which keeps every sort of value.
std::optional<PropertyList> listFrom(CFPropertyListRef object) {
  const CFRef<CFDataRef> bytes(CFPropertyListCreateData(
      kCFAllocatorDefault, object, kCFPropertyListBinaryFormat_v1_0, 0, nullptr));
  if (!bytes)
    return std::nullopt;
  try {
    return PropertyList::parse({reinterpret_cast<const char*>(CFDataGetBytePtr(bytes.get())),
                                static_cast<std::size_t>(CFDataGetLength(bytes.get()))});
  } catch (const PropertyListError&) {
    return std::nullopt;
  }
}

CFRef<CFPropertyListRef> objectFrom(const PropertyList& list) {
  const Data binary = list.binary();
  const CFRef<CFDataRef> bytes(CFDataCreate(kCFAllocatorDefault, binary.bytes.data(),
                                            static_cast<CFIndex>(binary.bytes.size())));
  if (!bytes)
    return {};
  return CFRef<CFPropertyListRef>(CFPropertyListCreateWithData(
      kCFAllocatorDefault, bytes.get(), kCFPropertyListImmutable, nullptr, nullptr));
}

} // namespace

bool MacPreferencesService::synchronize(const std::string& domain) {
  const auto name = toCFText(domain);
  return name && CFPreferencesAppSynchronize(name.get());
}

std::optional<PropertyList> MacPreferencesService::copyAppValue(const std::string& key,
                                                                const std::string& domain) {
  const auto name = toCFText(key);
  const auto place = toCFText(domain);
  if (!name || !place)
    return std::nullopt;
  const CFRef<CFPropertyListRef> value(CFPreferencesCopyAppValue(name.get(), place.get()));
  return value ? listFrom(value.get()) : std::nullopt;
}

void MacPreferencesService::setAppValue(const std::string& key, PropertyList value,
                                        const std::string& domain) {
  const auto name = toCFText(key);
  const auto place = toCFText(domain);
  const auto object = objectFrom(value);
  if (name && place && object)
    CFPreferencesSetAppValue(name.get(), object.get(), place.get());
}

} // namespace tavrin
