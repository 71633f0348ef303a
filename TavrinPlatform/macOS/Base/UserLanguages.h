#pragma once

#include "TavrinPlatform/PreferencesService.h"

#include <string>

namespace tavrin {

/// Has the environment name the user's region (LANG) and languages (LANGUAGE), as System Settings
/// has them under Language & Region: what the Dock starts has no locale there. False where the
/// environment names one, as a terminal's does, or the settings none. `application` is the bundle
/// identifier: an application can have languages of its own. To be called before there are threads.
bool nameLanguages(PreferencesService& preferences, const std::string& application);

} // namespace tavrin
