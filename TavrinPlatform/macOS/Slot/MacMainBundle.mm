#include "TavrinPlatform/macOS/Slot/MacMainBundle.h"

#include "TavrinPlatform/macOS/Base/MacText.h"

#include <cmath>

namespace tavrin {
namespace {

class MacMainBundle final : public MainBundle {
public:
  MacMainBundle() {
    const auto path = toPath(NSBundle.mainBundle.bundleURL);
    if (path.extension() == ".app")
      path_ = path;
  }

  std::optional<std::filesystem::path> path() const override { return path_; }
  std::optional<std::string> identifier() const override { return string("CFBundleIdentifier"); }

  std::optional<std::string> string(const std::string& key) const override {
    id value = entry(key);
    if (![value isKindOfClass:NSString.class])
      return std::nullopt;
    return toText((NSString*)value);
  }

  std::optional<long> integer(const std::string& key) const override {
    id value = entry(key);
    if (![value isKindOfClass:NSNumber.class] ||
        CFGetTypeID((__bridge CFTypeRef)value) == CFBooleanGetTypeID())
      return std::nullopt;
    NSNumber* number = value;
    const double exact = number.doubleValue;
    if (std::floor(exact) != exact)
      return std::nullopt;
    return number.integerValue;
  }

private:
  /// As it stands in the file: a localised text is for the user's eyes.
  id _Nullable entry(const std::string& key) const {
    return path_ ? NSBundle.mainBundle.infoDictionary[toNSString(key)] : nil;
  }

  std::optional<std::filesystem::path> path_;
};

} // namespace

std::unique_ptr<MainBundle> makeMacMainBundle() {
  return std::make_unique<MacMainBundle>();
}

} // namespace tavrin
