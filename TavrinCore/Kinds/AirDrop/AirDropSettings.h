#pragma once

#include "TavrinCore/Base/Coding.h"

namespace tavrin {

/// Where dropped files go is asked at each drop.
struct AirDropSettings {
  static constexpr std::string_view kindKey = "airdrop";

  /// What another version put there, written back as it was.
  JSONValue::Object unrecognized;

  static constexpr auto fields() { return std::tuple{}; }
  bool operator==(const AirDropSettings&) const = default;
};

} // namespace tavrin
