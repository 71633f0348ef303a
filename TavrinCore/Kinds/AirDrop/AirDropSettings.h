#pragma once

#include "TavrinCore/Base/Coding.h"

namespace tavrin {

/// Where dropped files go is asked at each drop.
struct AirDropSettings {
  static constexpr auto fields() { return std::tuple{}; }
  bool operator==(const AirDropSettings&) const = default;
};

} // namespace tavrin
