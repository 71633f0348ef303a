#include "TavrinCore/Kinds/Fans/SMCValue.h"

#include <bit>

namespace tavrin {
namespace {

constexpr double fpe2Scale = 4;

std::vector<std::uint8_t> bigEndian(unsigned value) {
  return {static_cast<std::uint8_t>(value >> 8 & 0xFF), static_cast<std::uint8_t>(value & 0xFF)};
}

} // namespace

std::optional<double> SMCValue::number() const {
  const auto word = [this] { return static_cast<double>(bytes[0] * 256 + bytes[1]); };
  if (type == "flt " && bytes.size() == 4) {
    std::uint32_t bits = 0;
    for (std::size_t i = 4; i-- > 0;)
      bits = bits << 8 | bytes[i];
    return static_cast<double>(std::bit_cast<float>(bits));
  }
  if (type == "fpe2" && bytes.size() == 2)
    return word() / fpe2Scale;
  if (type == "ui8 " && bytes.size() == 1)
    return bytes[0];
  if (type == "ui16" && bytes.size() == 2)
    return word();
  return std::nullopt;
}

std::optional<std::vector<std::uint8_t>> SMCValue::encoding(double value, std::string_view type) {
  if (type == "flt ") {
    const auto bits = std::bit_cast<std::uint32_t>(static_cast<float>(value));
    std::vector<std::uint8_t> bytes;
    for (unsigned shift = 0; shift < 32; shift += 8)
      bytes.push_back(static_cast<std::uint8_t>(bits >> shift & 0xFF));
    return bytes;
  }
  if (type == "fpe2" && value >= 0 && value * fpe2Scale <= 65535)
    return bigEndian(static_cast<unsigned>(value * fpe2Scale));
  if (type == "ui8 " && value >= 0 && value <= 255)
    return std::vector{static_cast<std::uint8_t>(value)};
  return std::nullopt;
}

std::optional<std::uint32_t> SMCValue::code(std::string_view text) {
  if (text.size() != 4)
    return std::nullopt;
  std::uint32_t code = 0;
  for (const char c : text)
    code = code << 8 | static_cast<std::uint8_t>(c);
  return code;
}

std::string SMCValue::name(std::uint32_t code) {
  std::string text;
  for (int shift = 24; shift >= 0; shift -= 8)
    text.push_back(static_cast<char>(code >> shift & 0xFF));
  return text;
}

} // namespace tavrin
