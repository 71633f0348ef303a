#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tavrin {

/// Bytes without a meaning of their own. In JSON: base64 (RFC 4648, section 4, padded).
struct Data {
  std::vector<std::uint8_t> bytes;

  static Data fromText(std::string_view text) {
    return {std::vector<std::uint8_t>(text.begin(), text.end())};
  }
  std::string_view view() const {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
  }

  std::string base64() const;
  /// No value when the text is not padded base64.
  static std::optional<Data> fromBase64(std::string_view text);

  bool operator==(const Data&) const = default;
};

} // namespace tavrin
