#pragma once

#include "TavrinCore/Base/Coding.h"

namespace tavrin {

/// A date that is coded as a text: "2026-03-09T12:30:00Z", whole seconds. Fractions and offsets
/// from UTC are read too.
struct ISO8601Date {
  Date date;

  std::string text() const;
  /// No value for anything else, and for years beyond 9999.
  static std::optional<ISO8601Date> parse(std::string_view text);

  bool operator==(const ISO8601Date&) const = default;
};

template <> struct Coder<ISO8601Date> {
  static ISO8601Date decode(const JSONValue& json);
  static JSONValue encode(const ISO8601Date& value) { return value.text(); }
};

} // namespace tavrin
