#include "TavrinPlatform/Linux/Base/BusProperties.h"

namespace tavrin {
namespace {

using Value = BusProperties::Value;

template <class T> std::optional<Value> readAs(sd_bus_message* message, char type) {
  T value{};
  if (sd_bus_message_read_basic(message, type, &value) <= 0)
    return std::nullopt;
  if constexpr (std::is_same_v<T, double>)
    return Value(value);
  else
    return Value(static_cast<std::int64_t>(value));
}

std::optional<Value> readBasic(sd_bus_message* message, char type) {
  switch (type) {
  case 'b': {
    int flag = 0;
    if (sd_bus_message_read_basic(message, 'b', &flag) <= 0)
      return std::nullopt;
    return Value(flag != 0);
  }
  case 'y':
    return readAs<std::uint8_t>(message, type);
  case 'n':
    return readAs<std::int16_t>(message, type);
  case 'q':
    return readAs<std::uint16_t>(message, type);
  case 'i':
    return readAs<std::int32_t>(message, type);
  case 'u':
    return readAs<std::uint32_t>(message, type);
  case 'x':
    return readAs<std::int64_t>(message, type);
  case 't':
    return readAs<std::uint64_t>(message, type);
  case 'd':
    return readAs<double>(message, type);
  case 's':
  case 'o': {
    const char* text = nullptr;
    if (sd_bus_message_read_basic(message, type, &text) <= 0 || text == nullptr)
      return std::nullopt;
    return Value(std::string(text));
  }
  default:
    return std::nullopt;
  }
}

constexpr std::string_view basicTypes = "bynqiuxtdso";

/// What the variant that is next holds; empty where there is none.
std::string variantContents(sd_bus_message* message) {
  char type = 0;
  const char* contents = nullptr;
  if (sd_bus_message_peek_type(message, &type, &contents) <= 0 || type != 'v' ||
      contents == nullptr)
    return {};
  return contents;
}

} // namespace

std::optional<BusProperties::Value> readVariant(sd_bus_message* message) {
  const std::string signature = variantContents(message);
  if (signature == "v" && sd_bus_message_enter_container(message, 'v', "v") > 0) {
    const auto value = readVariant(message);
    sd_bus_message_exit_container(message);
    return value;
  }
  if (signature.size() != 1 || basicTypes.find(signature[0]) == std::string_view::npos) {
    sd_bus_message_skip(message, "v");
    return std::nullopt;
  }
  if (sd_bus_message_enter_container(message, 'v', signature.c_str()) <= 0)
    return std::nullopt;
  const auto value = readBasic(message, signature[0]);
  sd_bus_message_exit_container(message);
  return value;
}

std::string textArgument(sd_bus_message* message) {
  const char* text = nullptr;
  if (sd_bus_message_read_basic(message, 's', &text) <= 0 || text == nullptr)
    return {};
  return text;
}

void BusProperties::read(sd_bus_message* message, const Other& other) {
  if (sd_bus_message_enter_container(message, 'a', "{sv}") <= 0)
    return;
  while (sd_bus_message_enter_container(message, 'e', "sv") > 0) {
    const std::string name = textArgument(message);
    const bool isOther = other && variantContents(message).size() > 1 && other(name, message);
    if (const auto value = isOther ? std::nullopt : readVariant(message))
      values_[name] = *value;
    sd_bus_message_exit_container(message);
  }
  sd_bus_message_exit_container(message);
}

std::string BusProperties::text(std::string_view name) const {
  const auto found = values_.find(name);
  const auto* text = found == values_.end() ? nullptr : std::get_if<std::string>(&found->second);
  return text == nullptr ? std::string() : *text;
}

std::optional<double> BusProperties::number(std::string_view name) const {
  const auto found = values_.find(name);
  if (found == values_.end())
    return std::nullopt;
  if (const auto* whole = std::get_if<std::int64_t>(&found->second))
    return static_cast<double>(*whole);
  const auto* real = std::get_if<double>(&found->second);
  return real == nullptr ? std::nullopt : std::optional(*real);
}

bool BusProperties::flag(std::string_view name) const {
  const auto found = values_.find(name);
  const auto* flag = found == values_.end() ? nullptr : std::get_if<bool>(&found->second);
  return flag != nullptr && *flag;
}

std::optional<std::vector<std::string>> readTexts(sd_bus_message* message, std::size_t most) {
  if (variantContents(message) != "as" || sd_bus_message_enter_container(message, 'v', "as") <= 0)
    return std::nullopt;
  std::vector<std::string> texts;
  if (sd_bus_message_enter_container(message, 'a', "s") > 0) {
    const char* text = nullptr;
    while (sd_bus_message_read_basic(message, 's', &text) > 0)
      if (texts.size() < most)
        texts.emplace_back(text);
    sd_bus_message_exit_container(message);
  }
  sd_bus_message_exit_container(message);
  return texts;
}

void readInterfaces(sd_bus_message* message,
                    const std::function<void(const std::string& interface)>& take) {
  if (sd_bus_message_enter_container(message, 'a', "{sa{sv}}") <= 0)
    return;
  while (sd_bus_message_enter_container(message, 'e', "sa{sv}") > 0) {
    take(textArgument(message));
    sd_bus_message_exit_container(message);
  }
  sd_bus_message_exit_container(message);
}

} // namespace tavrin
