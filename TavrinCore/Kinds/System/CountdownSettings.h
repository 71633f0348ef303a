#pragma once

#include "TavrinCore/Base/Coding.h"

namespace tavrin {

struct CountdownSettings {
  static constexpr std::string_view kindKey = "countdown";

  Date target;
  /// Past the target, show the time since it instead of stopping at zero.
  bool countsUpAfter = false;

  static constexpr auto fields() {
    return std::tuple{required("target", &CountdownSettings::target)
                          .titled("Date")
                          .helped("What is counted down to, in local time.")
                          .as(FieldRole::dateAndTime),
                      required("countsUpAfter", &CountdownSettings::countsUpAfter)
                          .titled("Count up after the date")
                          .helped("Shows the time since then instead of stopping at zero.")};
  }
  bool operator==(const CountdownSettings&) const = default;
};

} // namespace tavrin
