#pragma once

#include "TavrinCore/Settings/SettingEdit.h"
#include "TavrinHost/HostError.h"

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
DockWidget withAssignments(DockWidget widget, const std::vector<Assignment>& assignments, Date now,
                           const SettingSystem& system);

/// The kind with these settings, checked against `fields`, the lines of its record. Throws
/// HostError (refusedValue) naming the first fault.
DockWidget::Kind withCheckedSettings(const DockWidget::Kind& kind,
                                     const std::vector<FieldInfo>& fields,
                                     const JSONValue& settings, const SettingSystem& system);

/// What this system says of values, the same to the command and the settings window.
SettingSystem settingSystem(const std::filesystem::path& home);

/// The same refusal as an end of the command.
HostError hostError(const SettingError& error);

/// As `checkedName` and `checkedSpan`, by a HostError.
std::string checkedNameOf(std::string_view text);
int checkedSpanOf(const DockWidget::Kind& kind, std::string_view text);

} // namespace tavrin
