#include "TavrinCore/Text/ByteSearch.h"

#include <cstring>

namespace tavrin {
namespace {

/// Bytes looked at in one step. The loops over a block have no branches and a fixed length, which
/// is what compilers turn into vector instructions.
constexpr std::size_t block = 64;

/// Whether some i has first[i] == a and second[i] == b.
bool hasPair(const char* first, char a, const char* second, char b) {
  unsigned char found = 0;
  for (std::size_t i = 0; i < block; ++i)
    found = static_cast<unsigned char>(found | ((first[i] == a) & (second[i] == b)));
  return found != 0;
}

bool hasByte(const char* bytes, char byte) {
  unsigned char found = 0;
  for (std::size_t i = 0; i < block; ++i)
    found = static_cast<unsigned char>(found | (bytes[i] == byte));
  return found != 0;
}

} // namespace

std::size_t findBytes(std::string_view text, std::string_view needle, std::size_t from) {
  const std::size_t last = needle.size() - 1;
  std::size_t at = from;
  for (; at + block + last <= text.size(); at += block) {
    const char* bytes = text.data() + at;
    if (!hasPair(bytes + 1, needle[1], bytes + last, needle[last]))
      continue;
    for (std::size_t i = 0; i < block; ++i)
      if (bytes[i] == needle[0] && std::memcmp(bytes + i, needle.data(), needle.size()) == 0)
        return at + i;
  }
  return text.find(needle, at);
}

std::size_t findLastByte(std::string_view text, char byte) {
  std::size_t end = text.size();
  while (end >= block && !hasByte(text.data() + end - block, byte))
    end -= block;
  return text.substr(0, end).rfind(byte);
}

} // namespace tavrin
