#pragma once

#include "TavrinCore/Base/Coding.h"
#include "TavrinCore/Base/ISO8601.h"

namespace tavrin {

/// A date that is coded as a text: "2026-03-09T12:30:00Z", whole seconds. Fractions and offsets
/// from UTC are read too.
struct ISO8601Date {
  Date date;

  bool operator==(const ISO8601Date&) const = default;
};

template <> struct Coder<ISO8601Date> {
  static ISO8601Date decode(const JSONValue& json) {
    const auto date = dateFromISO8601(Coder<std::string>::decode(json));
    if (!date)
      detail::throwWrongType("a date such as \"2026-03-09T12:30:00Z\"");
    return {*date};
  }
  static JSONValue encode(const ISO8601Date& value) { return iso8601(value.date); }
};

} // namespace tavrin
