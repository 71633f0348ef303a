#include "TavrinPlatform/macOS/Slot/MacUserDefaults.h"

#include "TavrinCore/Base/Errors.h"
#include "TavrinPlatform/macOS/Base/MacText.h"

#include <cmath>

namespace tavrin {
namespace {

std::optional<JSONValue> parsed(std::string_view text) {
  try {
    return JSONValue::parse(text);
  } catch (const std::exception&) {
    return std::nullopt;
  }
}

std::optional<JSONValue> fromNumber(NSNumber* number) {
  if (CFGetTypeID((__bridge CFTypeRef)number) == CFBooleanGetTypeID())
    return JSONValue(bool(number.boolValue));
  const double exact = number.doubleValue;
  if (std::floor(exact) == exact && std::abs(exact) < 0x1p63)
    return JSONValue(std::int64_t{number.longLongValue});
  try {
    return JSONValue(exact);
  } catch (const std::exception&) { // not finite
    return std::nullopt;
  }
}

NSData* dataOf(const std::string& text) {
  return [NSData dataWithBytes:text.data() length:text.size()];
}

id toPropertyList(const JSONValue& value) {
  if (const auto* text = value.string())
    return toNSString(*text);
  if (const auto* flag = value.boolean())
    return [NSNumber numberWithBool:*flag];
  if (const auto whole = value.integerValue())
    return [NSNumber numberWithLongLong:*whole];
  const auto number = value.doubleValue();
  // Only where the double says all that the number's text says.
  if (number && JSONValue(*number) == value)
    return [NSNumber numberWithDouble:*number];
  return dataOf(value.compact());
}

class MacUserDefaults final : public UserDefaults {
public:
  explicit MacUserDefaults(LogSink& log) : log_(log, "defaults") {}

  std::optional<JSONValue> value(const std::string& key) const override {
    id found = [NSUserDefaults.standardUserDefaults objectForKey:toNSString(key)];
    if ([found isKindOfClass:NSString.class])
      return JSONValue(toText((NSString*)found));
    if ([found isKindOfClass:NSNumber.class])
      return fromNumber((NSNumber*)found);
    if (![found isKindOfClass:NSData.class])
      return std::nullopt;
    NSData* data = found;
    return parsed({static_cast<const char*>(data.bytes), data.length});
  }

  void set(const std::string& key, const JSONValue& value) override {
    [NSUserDefaults.standardUserDefaults setObject:toPropertyList(value) forKey:toNSString(key)];
    write();
  }
  void remove(const std::string& key) override {
    [NSUserDefaults.standardUserDefaults removeObjectForKey:toNSString(key)];
    write();
  }

private:
  /// Left to itself the system writes later.
  void write() {
    const bool isWritten = CFPreferencesAppSynchronize(kCFPreferencesCurrentApplication);
    if (!isWritten && !hasComplained_)
      log_.error(failure("save the defaults", "the system did not take them"));
    hasComplained_ = !isWritten;
  }

  Log log_;
  bool hasComplained_ = false;
};

} // namespace

std::unique_ptr<UserDefaults> makeMacUserDefaults(LogSink& log) {
  return std::make_unique<MacUserDefaults>(log);
}

} // namespace tavrin
