#pragma once

#include "TavrinCore/Settings/SettingSystem.h"
#include "TavrinCore/Widgets/DockWidget.h"

#include <set>
#include <string>

namespace tavrin {

/// How settings came to be changed.
struct SettingChange {
  const DockWidget::Kind& before;
  /// The keys that were given a value, also one that they had already; empty where that is unknown.
  std::set<std::string> named;
  SettingSystem system;
};

/// Brings settings that belong together into line, where the change touched them. Throws
/// SettingError for a combination or a value that would show nothing, or something wrong.
void settle(DockWidget::Kind& after, const SettingChange& change);

} // namespace tavrin
