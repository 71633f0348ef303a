#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tavrin {

/// A value of the system management controller: the data type's code of four characters, such as
/// "flt " or "fpe2", and its raw bytes.
struct SMCValue {
  std::string type;
  std::vector<std::uint8_t> bytes;

  /// No value for a type that is not known, or another count of bytes than it has.
  std::optional<double> number() const;
  /// No value for a type that is never written, or a number beyond its range.
  static std::optional<std::vector<std::uint8_t>> encoding(double value, std::string_view type);
  /// Four characters as a number, the first in its highest byte, and back. No value for a text of
  /// another length.
  static std::optional<std::uint32_t> code(std::string_view text);
  static std::string name(std::uint32_t code);

  bool operator==(const SMCValue&) const = default;
};

/// The controller's keyed store. Both throw FanError.
class SMCAccess {
public:
  virtual ~SMCAccess() = default;
  virtual SMCValue read(const std::string& key) = 0;
  virtual void write(const std::string& key, const std::vector<std::uint8_t>& bytes) = 0;
};

} // namespace tavrin
