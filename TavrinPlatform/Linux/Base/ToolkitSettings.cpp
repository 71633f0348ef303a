#include "TavrinPlatform/Linux/Base/ToolkitSettings.h"

#include "TavrinCore/Base/Errors.h"
#include "TavrinCore/Desktop/KeyFile.h"
#include "TavrinCore/Text/Text.h"
#include "TavrinPlatform/Files/AtomicFile.h"

#include <cctype>
#include <cstdio>
#include <cstdlib>

namespace tavrin {

std::optional<std::string> toolkitSetting(const FileManager& files, const std::string& file,
                                          const std::string& group, const std::string& key) {
  const auto folder = files.environment("XDG_CONFIG_HOME");
  const bool isSet = folder && folder->starts_with('/');
  std::optional<std::string> found;
  try {
    const auto text =
        readFile((isSet ? std::filesystem::path(*folder) : files.homeFolder() / ".config") / file);
    eachKeyFileLine(text.value_or(""), [&](auto inGroup, auto name, auto value) {
      if (!found && inGroup == group && name == key && !trimmed(value).empty())
        found = trimmed(value);
    });
  } catch (const FileError&) {
    // As if it were not there.
  }
  return found;
}

bool isDarkInSettings(const FileManager& files) {
  const auto ground =
      toolkitSetting(files, "kdeglobals", "Colors:Window", "BackgroundNormal").value_or("");
  int red = 0;
  int green = 0;
  int blue = 0;
  constexpr int weights[] = {299, 587, 114};
  return std::sscanf(ground.c_str(), "%3d,%3d,%3d", &red, &green, &blue) == 3 &&
         (weights[0] * red + weights[1] * green + weights[2] * blue) / 1000 < 128;
}

namespace {

constexpr const char* gtkFiles[] = {"gtk-4.0/settings.ini", "gtk-3.0/settings.ini"};

} // namespace

bool isStillInSettings(const FileManager& files) {
  const auto factor = toolkitSetting(files, "kdeglobals", "KDE", "AnimationDurationFactor");
  if (factor && std::strtod(factor->c_str(), nullptr) <= 0)
    return true;
  for (const char* file : gtkFiles)
    if (const auto on = toolkitSetting(files, file, "Settings", "gtk-enable-animations"))
      return on == "0" || on == "false";
  return false;
}

bool isHighContrast(const std::string& theme) {
  std::string letters;
  for (const char c : theme)
    if (std::isalpha(static_cast<unsigned char>(c)) != 0)
      letters += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return letters.find("highcontrast") != std::string::npos;
}

bool hasHighContrastInSettings(const FileManager& files) {
  for (const char* file : gtkFiles)
    if (isHighContrast(toolkitSetting(files, file, "Settings", "gtk-theme-name").value_or("")))
      return true;
  return isHighContrast(toolkitSetting(files, "kdeglobals", "General", "ColorScheme").value_or(""));
}

std::optional<std::string> iconThemeInSettings(const FileManager& files) {
  for (const char* file : gtkFiles)
    if (auto theme = toolkitSetting(files, file, "Settings", "gtk-icon-theme-name"))
      return theme;
  return toolkitSetting(files, "kdeglobals", "Icons", "Theme");
}

} // namespace tavrin
