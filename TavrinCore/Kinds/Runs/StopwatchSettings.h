#pragma once

#include "TavrinCore/Base/Coding.h"

namespace tavrin {

/// A stopwatch has nothing to set.
struct StopwatchSettings {
  static constexpr std::string_view kindKey = "stopwatch";

  /// What another version put there, written back as it was.
  JSONValue::Object unrecognized;

  static constexpr auto fields() { return std::tuple{}; }
  bool operator==(const StopwatchSettings&) const = default;
};

} // namespace tavrin
