#pragma once

#include "TavrinCore/Base/Coding.h"

namespace tavrin {

/// The fans are the machine's: a widget has nothing of its own to set.
struct FanSettings {
  static constexpr std::string_view kindKey = "fans";

  /// What another version put there, written back as it was.
  JSONValue::Object unrecognized;

  static constexpr auto fields() { return std::tuple{}; }
  bool operator==(const FanSettings&) const = default;
};

} // namespace tavrin
