#pragma once

#include "TavrinCore/Base/Coding.h"

namespace tavrin {

struct CountdownSettings {
  Date target;
  /// Past the target, show the time since it instead of stopping at zero.
  bool countsUpAfter = false;

  static constexpr auto fields() {
    return std::tuple{required("target", &CountdownSettings::target).titled("Date"),
                      required("countsUpAfter", &CountdownSettings::countsUpAfter)
                          .titled("Count up after the date")};
  }
  bool operator==(const CountdownSettings&) const = default;
};

} // namespace tavrin
