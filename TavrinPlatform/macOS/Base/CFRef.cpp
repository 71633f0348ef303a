#include "TavrinPlatform/macOS/Base/CFRef.h"

namespace tavrin {

CFText toCFText(const std::string& text) {
  return CFText(
      CFStringCreateWithCString(kCFAllocatorDefault, text.c_str(), kCFStringEncodingUTF8));
}

std::optional<std::string> textFrom(CFTypeRef object) {
  if (object == nullptr || CFGetTypeID(object) != CFStringGetTypeID())
    return std::nullopt;
  const auto string = static_cast<CFStringRef>(object);
  const CFIndex longest =
      CFStringGetMaximumSizeForEncoding(CFStringGetLength(string), kCFStringEncodingUTF8);
  if (longest < 0)
    return std::nullopt;
  std::string bytes(static_cast<std::size_t>(longest) + 1, '\0');
  if (!CFStringGetCString(string, bytes.data(), longest + 1, kCFStringEncodingUTF8))
    return std::nullopt;
  return std::string(bytes.c_str());
}

std::optional<int> integerFrom(CFTypeRef object) {
  int value = 0;
  if (object == nullptr || CFGetTypeID(object) != CFNumberGetTypeID() ||
      !CFNumberGetValue(static_cast<CFNumberRef>(object), kCFNumberIntType, &value))
    return std::nullopt;
  return value;
}

std::optional<bool> booleanFrom(CFTypeRef object) {
  if (object == nullptr || CFGetTypeID(object) != CFBooleanGetTypeID())
    return std::nullopt;
  return CFBooleanGetValue(static_cast<CFBooleanRef>(object)) != 0;
}

} // namespace tavrin
