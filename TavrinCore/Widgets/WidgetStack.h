#pragma once

#include "TavrinCore/Base/Coding.h"

namespace tavrin {

/// Widgets that share one position in the Dock.
struct WidgetStack {
  UUID id;
  std::vector<UUID> members;

  static constexpr auto fields() {
    return std::tuple{required("id", &WidgetStack::id).titled("Identifier"),
                      required("members", &WidgetStack::members).titled("Widgets")};
  }
  bool operator==(const WidgetStack&) const = default;
};

} // namespace tavrin
