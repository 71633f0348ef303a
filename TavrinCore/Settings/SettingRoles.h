#pragma once

#include "TavrinCore/Base/FieldInfo.h"
#include "TavrinCore/Settings/SettingSystem.h"

#include <string>

namespace tavrin {

/// The clause about the first value in `after` that its field's role, choices or own check does
/// not allow, such as `"tintHex" must be a colour such as #FBBF24, not "purple"`; empty when all
/// are allowed. What `before` has too is left alone: what is stored may stay as it is.
std::string faultInChanges(const std::vector<FieldInfo>& fields, const JSONValue& before,
                           const JSONValue& after, const SettingSystem& system);

/// Whether a text is what its role says, as far as that can be told.
bool fitsRole(FieldRole role, const std::string& text, const SettingSystem& system);

} // namespace tavrin
