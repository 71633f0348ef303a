#include "TavrinCore/Base/PublicAddress.h"

#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <cstdint>

namespace tavrin {
namespace {

using V4 = std::uint32_t;
using V6 = std::array<std::uint8_t, 16>;

struct V4Block {
  V4 start;
  int bits;
  bool contains(V4 address) const { return ((address ^ start) >> (32 - bits)) == 0; }
};

constexpr V4 v4(unsigned a, unsigned b, unsigned c = 0) {
  return a << 24 | b << 16 | c << 8;
}

constexpr std::array<V4Block, 15> closedV4{{{v4(0, 0), 8},       // this network
                                            {v4(10, 0), 8},      // private
                                            {v4(100, 64), 10},   // shared by a provider's customers
                                            {v4(127, 0), 8},     // this computer
                                            {v4(169, 254), 16},  // link
                                            {v4(172, 16), 12},   // private
                                            {v4(192, 0, 0), 24}, // protocols
                                            {v4(192, 0, 2), 24}, // documentation
                                            {v4(192, 88, 99), 24}, // relays
                                            {v4(192, 168), 16},    // private
                                            {v4(198, 18), 15},     // measurements
                                            {v4(198, 51, 100), 24},
                                            {v4(203, 0, 113), 24},
                                            {v4(224, 0), 4},   // multicast
                                            {v4(240, 0), 4}}}; // reserved, broadcast

bool isPublic(V4 address) {
  return std::ranges::none_of(closedV4,
                              [&](const V4Block& block) { return block.contains(address); });
}

V4 embedded(const V6& address, std::size_t at) {
  V4 value = 0;
  for (std::size_t i = at; i < at + 4; ++i)
    value = value << 8 | address[i];
  return value;
}

bool startsWith(const V6& address, const V6& start, int bits) {
  const auto whole = static_cast<std::size_t>(bits / 8);
  if (!std::equal(start.begin(), start.begin() + whole, address.begin()))
    return false;
  return bits % 8 == 0 || ((address[whole] ^ start[whole]) >> (8 - bits % 8)) == 0;
}

bool isPublic(const V6& address) {
  constexpr V6 mapped{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0xFF};
  constexpr V6 translated{0, 0x64, 0xFF, 0x9B};
  constexpr V6 unicast{0x20};
  constexpr V6 protocols{0x20, 0x01};
  constexpr V6 documentation{0x20, 0x01, 0x0D, 0xB8};
  constexpr V6 moreDocumentation{0x3F, 0xFF};
  constexpr V6 sixToFour{0x20, 0x02};
  constexpr std::size_t tail = 12;
  if (startsWith(address, mapped, 96) || startsWith(address, translated, 96))
    return isPublic(embedded(address, tail));
  if (startsWith(address, sixToFour, 16))
    return isPublic(embedded(address, 2));
  // An address that tunnels through a site's own IPv4.
  const bool isTunnelled =
      (address[8] & ~2) == 0 && address[9] == 0 && address[10] == 0x5E && address[11] == 0xFE;
  if (isTunnelled && !isPublic(embedded(address, tail)))
    return false;
  return startsWith(address, unicast, 3) && !startsWith(address, protocols, 23) &&
         !startsWith(address, documentation, 32) && !startsWith(address, moreDocumentation, 20);
}

} // namespace

bool isPublicAddress(const std::string& address) {
  in_addr four{};
  if (::inet_pton(AF_INET, address.c_str(), &four) == 1)
    return isPublic(V4{ntohl(four.s_addr)});
  V6 six{};
  return ::inet_pton(AF_INET6, address.c_str(), six.data()) == 1 && isPublic(six);
}

} // namespace tavrin
