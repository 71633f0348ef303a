#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace tavrin {

/// A 128-bit identifier (RFC 4122), written in upper case as 8-4-4-4-12 hexadecimal digits.
struct UUID {
  std::array<std::uint8_t, 16> bytes{};

  /// A version 4 identifier from the system's random source.
  static UUID random();

  /// Reads the canonical form in either case; anything else gives no value.
  static std::optional<UUID> parse(std::string_view text);

  std::string text() const;

  auto operator<=>(const UUID&) const = default;
};

} // namespace tavrin

template <> struct std::hash<tavrin::UUID> {
  std::size_t operator()(const tavrin::UUID& id) const noexcept;
};
