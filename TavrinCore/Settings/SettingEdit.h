#pragma once

#include "TavrinCore/Settings/SettingError.h"
#include "TavrinCore/Settings/SettingSystem.h"
#include "TavrinCore/Widgets/DockWidget.h"

#include <string>
#include <vector>

namespace tavrin {

/// A new value for one part of a widget.
struct SettingValue {
  /// "name", "span", or a setting's key; "calendars.accountIDs" reaches into a record.
  std::string path;
  /// Null for no value.
  JSONValue value;
  /// What its editor had before it; none where that is unknown or of no matter.
  std::optional<JSONValue> before = {};
};

/// The widget with all of the values, settled; or, by a SettingError, with none. What others
/// changed in `widget` meanwhile stays: applied to the record as it stands, two editors of
/// different settings never undo each other. Of a list that others changed too, what either added
/// or took out is added and taken out; any other setting that others changed since `before` is
/// refused, so that nothing is lost unseen.
DockWidget withValues(const DockWidget& widget, const std::vector<SettingValue>& values,
                      const SettingSystem& system);

struct SettingChange;
/// The kind with these settings, checked and settled as `change` says. Throws SettingError.
DockWidget::Kind withSettled(const SettingChange& change, const JSONValue& settings);

/// A nested record as a new widget has it.
JSONValue freshRecord(const std::vector<FieldInfo>& fields);

/// `text` without white space around it. Throws SettingError when nothing is left.
std::string checkedName(std::string_view text);
/// Throws SettingError outside 1 to the kind's `maxSpan`.
int checkedSpan(const DockWidget::Kind& kind, const JSONValue& value);

/// The value at a path; null where there is none.
JSONValue valueAt(const DockWidget& widget, std::string_view path);

/// Why a value that is stored already would be refused, as one sentence with the field's key; empty
/// where it would not.
std::string storedFault(const FieldInfo& field, const JSONValue& value,
                        const SettingSystem& system);

/// The sentence about a value that is taken but leads nowhere: a folder that is not there. Empty
/// for none.
std::string settingWarning(const FieldInfo& field, const JSONValue& value,
                           const SettingSystem& system);

} // namespace tavrin
