#pragma once

#include "TavrinCore/Widgets/DockWidget.h"

#include <filesystem>
#include <string>
#include <vector>

namespace tavrin {

/// "key=value" as it stands on the command line; "calendars.accountIDs=a" reaches into a record and
/// "apps.0.name=Mail" into a list.
struct Assignment {
  std::string key;
  std::string value;

  /// Throws HostError (usage) for a word without "=" or with nothing before it.
  static Assignment parse(std::string_view word);
};

/// The widget with the assignments carried out in order; all of them or, by a HostError, none.
/// Beside the kind's settings there are "name" and "span", where the kind has none so called.
/// `home` is what
/// "~" stands for in lists of paths.
DockWidget withAssignments(DockWidget widget, const std::vector<Assignment>& assignments, Date now,
                           const std::filesystem::path& home = {});

/// The kind with these settings, checked against `fields`, the lines of its record. Throws
/// HostError (refusedValue) naming the first fault.
DockWidget::Kind withCheckedSettings(const DockWidget::Kind& kind,
                                     const std::vector<FieldInfo>& fields,
                                     const JSONValue& settings,
                                     const std::filesystem::path& home = {});

/// `text` without white space around it. Throws HostError (refusedValue) when nothing is left.
std::string checkedName(std::string_view text);
/// Throws HostError (refusedValue) outside 1 to the kind's `maxSpan`.
int checkedSpan(const DockWidget::Kind& kind, std::string_view text);

} // namespace tavrin
