#pragma once

#include "TavrinCore/Base/FieldInfo.h"

#include <optional>

namespace tavrin {

/// The control that suits a field.
enum class FieldControl {
  toggle,
  /// Yes, no, or no value.
  threeStates,
  choice,
  /// A whole number or a number in a range, stepped or typed.
  number,
  text,
  severalLines,
  dateAndTime,
  colour,
  symbol,
  /// A path, typed or chosen in the desktop's dialog.
  path,
  shortcut,
  timeZone,
  /// One control over the name and both coordinates.
  city,
  /// A choice of what the system has: a reminder list, a player, a network link.
  systemChoice,
  /// An application's action, chosen by its application.
  applicationAction,
  /// Accounts and calendars, ticked.
  calendars,
  /// Lists, whose elements are added, taken out and put into another order.
  durations,
  applications,
  paths,
  texts,
  /// Records below each other, each with its own fields.
  records,
  record,
};

/// No value for a field that none of them can set.
std::optional<FieldControl> controlFor(const FieldInfo& field);

/// Whether a line that is typed for the field is taken once it is whole, not with each letter: each
/// beginning of an address, a path or a command is another one, and one of a number may be too. Of
/// a plain text each letter is taken; a colour is none before its last.
bool isTakenWhole(const FieldInfo& field);

/// Whether the field is set by another one's control: coordinates by the city's.
bool isCoveredByAnother(const FieldInfo& field);

} // namespace tavrin
