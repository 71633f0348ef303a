#pragma once

#include "TavrinCore/Settings/SettingSystem.h"
#include "TavrinCore/Widgets/DockWidget.h"

#include <string>
#include <string_view>

namespace tavrin {

/// A widget as a text to edit: JSON with a remark above each key that says what it takes. Dates
/// stand as local times; every value may also be written as a text in the way of the command line.
std::string editForm(const DockWidget& widget);

/// A form as it was typed, with the complaint about it at the top in place of an older one.
std::string withComplaint(std::string_view form, std::string_view complaint);

/// The widget that a form describes. `base` gives what a form does not hold: the identifier, the
/// slot and the kind. Throws HostError (refusedValue) or SettingError, which name the first fault.
DockWidget widgetFromForm(const DockWidget& base, std::string_view form, Date now,
                          const SettingSystem& system);

/// `current` with what was changed from `base` to `edited`, so that changes that came in between
/// are kept.
DockWidget merged(const DockWidget& base, const DockWidget& edited, const DockWidget& current);

} // namespace tavrin
