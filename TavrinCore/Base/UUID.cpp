#include "TavrinCore/Base/UUID.h"

#include "TavrinCore/Text/Numbers.h"

#include <cstring>
#include <random>

namespace tavrin {
namespace {

bool isDashPosition(std::size_t index) {
  return index == 8 || index == 13 || index == 18 || index == 23;
}

} // namespace

UUID UUID::random() {
  std::random_device source;
  UUID id;
  for (std::size_t i = 0; i < id.bytes.size(); i += 4) {
    const std::uint32_t word = source();
    std::memcpy(&id.bytes[i], &word, sizeof word);
  }
  id.bytes[6] = static_cast<std::uint8_t>((id.bytes[6] & 0x0F) | 0x40);
  id.bytes[8] = static_cast<std::uint8_t>((id.bytes[8] & 0x3F) | 0x80);
  return id;
}

std::optional<UUID> UUID::parse(std::string_view text) {
  if (text.size() != 36)
    return std::nullopt;
  UUID id;
  std::size_t nibble = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (isDashPosition(i)) {
      if (text[i] != '-')
        return std::nullopt;
      continue;
    }
    const auto digit = hexDigit(text[i]);
    if (!digit)
      return std::nullopt;
    auto& byte = id.bytes[nibble / 2];
    byte = static_cast<std::uint8_t>((byte << 4) | *digit);
    ++nibble;
  }
  return id;
}

std::string UUID::text() const {
  static constexpr char digits[] = "0123456789ABCDEF";
  std::string out;
  out.reserve(36);
  for (const std::uint8_t byte : bytes) {
    if (isDashPosition(out.size()))
      out += '-';
    out += digits[byte >> 4];
    out += digits[byte & 0x0F];
  }
  return out;
}

} // namespace tavrin

std::size_t std::hash<tavrin::UUID>::operator()(const tavrin::UUID& id) const noexcept {
  std::uint64_t high;
  std::uint64_t low;
  std::memcpy(&high, id.bytes.data(), 8);
  std::memcpy(&low, id.bytes.data() + 8, 8);
  return static_cast<std::size_t>(high ^ (low * 0x9E3779B97F4A7C15ULL));
}
