#pragma once

#include "TavrinPlatform/FileManager.h"

#include <optional>
#include <string>

namespace tavrin {

/// A value in the key file `file` of the user's configuration folder: "kdeglobals",
/// "gtk-3.0/settings.ini". No value where file, group or key are missing.
std::optional<std::string> toolkitSetting(const FileManager& files, const std::string& file,
                                          const std::string& group, const std::string& key);

/// Whether the colour scheme in the file "kdeglobals" has dark windows; false where there is none.
bool isDarkInSettings(const FileManager& files);

/// Whether a toolkit's own file says that nothing is to move: Plasma's factor for the length of
/// animations is 0, or GTK's are switched off.
bool isStillInSettings(const FileManager& files);

/// Whether the colour scheme or the theme that a toolkit's own file names has high contrast.
bool hasHighContrastInSettings(const FileManager& files);
/// By the name of a theme or scheme, such as "HighContrastInverse".
bool isHighContrast(const std::string& theme);

/// The icon theme as the toolkits' own files name it.
std::optional<std::string> iconThemeInSettings(const FileManager& files);

} // namespace tavrin
