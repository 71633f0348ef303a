#include "TavrinCore/Base/Base64.h"

#include "TavrinCore/Base/Wipe.h"

#include <algorithm>
#include <array>

namespace tavrin {
namespace {

constexpr std::string_view alphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

/// The two digits of 12 bits.
constexpr auto pairs = [] {
  std::array<std::array<char, 2>, 4096> table{};
  for (std::size_t i = 0; i < table.size(); ++i)
    table[i] = {alphabet[i >> 6], alphabet[i & 63]};
  return table;
}();

/// What a digit means in each of the four places of a group, and this where it is none.
constexpr std::uint32_t noDigit = 0x8000'0000;
constexpr auto places = [] {
  std::array<std::array<std::uint32_t, 256>, 4> tables{};
  for (auto& table : tables)
    table.fill(noDigit);
  for (std::size_t i = 0; i < alphabet.size(); ++i)
    for (std::size_t place = 0; place < 4; ++place)
      tables[place][static_cast<std::uint8_t>(alphabet[i])] = static_cast<std::uint32_t>(i)
                                                              << (18 - 6 * place);
  return tables;
}();

/// Groups that are coded before they are appended, so that nothing is written twice.
constexpr std::size_t chunkGroups = 512;

std::uint32_t groupAt(const char* digits) {
  const auto at = [digits](std::size_t place) {
    return places[place][static_cast<std::uint8_t>(digits[place])];
  };
  return at(0) | at(1) | at(2) | at(3);
}

} // namespace

void appendBase64(std::string& out, const Data& data) {
  const auto& bytes = data.bytes;
  std::array<char, chunkGroups * 4> chunk;
  const std::uint8_t* from = bytes.data();
  for (std::size_t groups = bytes.size() / 3; groups > 0;) {
    const std::size_t count = std::min(groups, chunkGroups);
    char* to = chunk.data();
    for (std::size_t i = 0; i < count; ++i, from += 3, to += 4) {
      const std::uint32_t word = static_cast<std::uint32_t>(from[0]) << 16 |
                                 static_cast<std::uint32_t>(from[1]) << 8 | from[2];
      std::copy_n(pairs[word >> 12].data(), 2, to);
      std::copy_n(pairs[word & 0xFFF].data(), 2, to + 2);
    }
    out.append(chunk.data(), count * 4);
    groups -= count;
  }
  wipe(chunk.data(), chunk.size());
  const std::size_t left = bytes.size() % 3;
  if (left == 0)
    return;
  const std::uint32_t word = static_cast<std::uint32_t>(from[0]) << 16 |
                             (left > 1 ? static_cast<std::uint32_t>(from[1]) << 8 : 0);
  out.append(pairs[word >> 12].data(), 2);
  out += left > 1 ? alphabet[(word >> 6) & 63] : '=';
  out += '=';
}

std::string Data::base64() const {
  std::string out;
  out.reserve((bytes.size() + 2) / 3 * 4);
  appendBase64(out, *this);
  return out;
}

std::optional<Data> Data::fromBase64(std::string_view text) {
  if (text.size() % 4 != 0)
    return std::nullopt;
  Data data;
  if (text.empty())
    return data;
  const std::size_t padding = text.ends_with("==") ? 2 : text.ends_with('=') ? 1 : 0;
  data.bytes.reserve(text.size() / 4 * 3);
  std::array<std::uint8_t, chunkGroups * 3> chunk;
  const char* from = text.data();
  for (std::size_t groups = text.size() / 4 - 1; groups > 0;) {
    const std::size_t count = std::min(groups, chunkGroups);
    std::uint8_t* to = chunk.data();
    std::uint32_t all = 0;
    for (std::size_t i = 0; i < count; ++i, from += 4, to += 3) {
      const std::uint32_t word = groupAt(from);
      all |= word;
      to[0] = static_cast<std::uint8_t>(word >> 16);
      to[1] = static_cast<std::uint8_t>(word >> 8);
      to[2] = static_cast<std::uint8_t>(word);
    }
    if ((all & noDigit) != 0)
      return std::nullopt;
    data.bytes.insert(data.bytes.end(), chunk.data(), chunk.data() + count * 3);
    groups -= count;
  }
  wipe(chunk.data(), chunk.size());
  std::array<char, 4> last{};
  std::copy_n(from, 4, last.begin());
  std::fill(last.end() - static_cast<std::ptrdiff_t>(padding), last.end(), alphabet.front());
  const std::uint32_t word = groupAt(last.data());
  if ((word & noDigit) != 0)
    return std::nullopt;
  for (std::size_t i = 0; i < 3 - padding; ++i)
    data.bytes.push_back(static_cast<std::uint8_t>(word >> (16 - 8 * i)));
  return data;
}

} // namespace tavrin
