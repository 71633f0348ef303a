#include "TavrinCore/Base/Data.h"

#include <array>

namespace tavrin {
namespace {

constexpr std::string_view alphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

constexpr auto sextets = [] {
  std::array<std::int8_t, 256> table{};
  table.fill(-1);
  for (std::size_t i = 0; i < alphabet.size(); ++i)
    table[static_cast<std::uint8_t>(alphabet[i])] = static_cast<std::int8_t>(i);
  return table;
}();

} // namespace

std::string Data::base64() const {
  std::string out;
  out.reserve((bytes.size() + 2) / 3 * 4);
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    const std::size_t left = bytes.size() - i;
    std::uint32_t word = static_cast<std::uint32_t>(bytes[i]) << 16;
    if (left > 1)
      word |= static_cast<std::uint32_t>(bytes[i + 1]) << 8;
    if (left > 2)
      word |= bytes[i + 2];
    out += alphabet[word >> 18];
    out += alphabet[(word >> 12) & 63];
    out += left > 1 ? alphabet[(word >> 6) & 63] : '=';
    out += left > 2 ? alphabet[word & 63] : '=';
  }
  return out;
}

std::optional<Data> Data::fromBase64(std::string_view text) {
  if (text.size() % 4 != 0)
    return std::nullopt;
  std::size_t padding = 0;
  if (text.ends_with("=="))
    padding = 2;
  else if (text.ends_with('='))
    padding = 1;
  Data data;
  data.bytes.reserve(text.size() / 4 * 3);
  for (std::size_t i = 0; i < text.size(); i += 4) {
    const std::size_t digits = i + 4 == text.size() ? 4 - padding : 4;
    std::uint32_t word = 0;
    for (std::size_t j = 0; j < 4; ++j) {
      const int sextet = j < digits ? sextets[static_cast<std::uint8_t>(text[i + j])] : 0;
      if (sextet < 0)
        return std::nullopt;
      word = word << 6 | static_cast<std::uint32_t>(sextet);
    }
    for (std::size_t j = 0; j + 1 < digits; ++j)
      data.bytes.push_back(static_cast<std::uint8_t>(word >> (16 - 8 * j)));
  }
  return data;
}

} // namespace tavrin
