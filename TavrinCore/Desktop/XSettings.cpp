#include "TavrinCore/Desktop/XSettings.h"

#include <cstdint>

namespace tavrin {
namespace {

/// Takes from the front; once it wanted more than was left there is nothing more.
class Reader {
public:
  explicit Reader(std::string_view bytes) : bytes_(bytes) {}

  bool isAtEnd() const { return bytes_.empty(); }
  bool isCut() const { return isCut_; }

  std::string_view take(std::size_t count) {
    if (count > bytes_.size()) {
      bytes_ = {};
      isCut_ = true;
      return {};
    }
    const auto taken = bytes_.substr(0, count);
    bytes_.remove_prefix(count);
    return taken;
  }

  std::string_view takePadded(std::size_t count) {
    const auto taken = take(count);
    take((4 - count % 4) % 4);
    return taken;
  }

  std::uint32_t number(std::size_t count) {
    const auto digits = take(count);
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < digits.size(); ++i)
      value = value << 8 | static_cast<unsigned char>(digits[isBig_ ? i : digits.size() - 1 - i]);
    return value;
  }

  void setBigEndian(bool isBig) { isBig_ = isBig; }

private:
  std::string_view bytes_;
  bool isBig_ = false;
  bool isCut_ = false;
};

enum : std::uint32_t { integerType, textType, colourType };

struct Setting {
  std::uint32_t type = integerType;
  std::uint32_t number = 0;
  std::string_view text;
};

std::optional<Setting> settingIn(std::string_view property, std::string_view name) {
  Reader reader(property);
  reader.setBigEndian(reader.number(1) == 1);
  reader.take(3);
  reader.number(4);
  for (auto left = reader.number(4); left > 0 && !reader.isAtEnd(); --left) {
    Setting setting;
    setting.type = reader.number(1);
    reader.take(1);
    const auto length = reader.number(2);
    const bool isWanted = reader.takePadded(length) == name;
    reader.number(4);
    if (setting.type == textType)
      setting.text = reader.takePadded(reader.number(4));
    else if (setting.type == integerType)
      setting.number = reader.number(4);
    else if (setting.type == colourType)
      reader.take(8);
    else
      break;
    if (isWanted && !reader.isCut())
      return setting;
  }
  return std::nullopt;
}

} // namespace

std::optional<std::string> textInXSettings(std::string_view property, std::string_view name) {
  const auto setting = settingIn(property, name);
  return setting && setting->type == textType && !setting->text.empty()
             ? std::optional(std::string(setting->text))
             : std::nullopt;
}

std::optional<std::int32_t> integerInXSettings(std::string_view property, std::string_view name) {
  const auto setting = settingIn(property, name);
  return setting && setting->type == integerType
             ? std::optional(static_cast<std::int32_t>(setting->number))
             : std::nullopt;
}

} // namespace tavrin
