#pragma once

#include "TavrinCore/Settings/SettingEdit.h"

#include <string>

namespace tavrin {

/// What of a widget a value sets, down to one text in one element of a list: values of the same
/// that follow each other, such as letters, are one step of undo. Empty for a step of its own: a
/// list that has other elements than before, or another order.
std::string stepField(const SettingValue& value);

} // namespace tavrin
