#include "TavrinPlatform/Linux/Base/InterfaceFont.h"

#include "TavrinCore/Text/Text.h"
#include "TavrinPlatform/Linux/Base/ToolkitSettings.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace tavrin {
namespace {

constexpr std::array<std::string_view, 20> styles = {
    "Thin",       "Ultra-Light", "Extra-Light", "Light",     "Semi-Light", "Book",     "Regular",
    "Normal",     "Roman",       "Medium",      "Semi-Bold", "Demi-Bold",  "Bold",     "Ultra-Bold",
    "Extra-Bold", "Heavy",       "Black",       "Italic",    "Oblique",    "Condensed"};

bool isSize(std::string_view word) {
  return std::all_of(word.begin(), word.end(), [](unsigned char c) {
    return std::isdigit(c) != 0 || c == '.' || c == 'p' || c == 'x';
  });
}

} // namespace

std::optional<std::string> fontFamilyOf(std::string_view description) {
  std::string_view family = trimmed(description.substr(0, description.find(',')));
  for (bool mayBeSize = true; !family.empty(); mayBeSize = false) {
    const auto space = family.rfind(' ');
    const std::string_view last = family.substr(space == std::string_view::npos ? 0 : space + 1);
    const bool isStyle = std::find(styles.begin(), styles.end(), last) != styles.end();
    if (space == std::string_view::npos || !(isStyle || (mayBeSize && isSize(last))))
      break;
    family = trimmed(family.substr(0, space));
  }
  if (family.empty())
    return std::nullopt;
  return std::string(family);
}

std::optional<std::string> fontFamilyInSettings(const FileManager& files) {
  const auto font = toolkitSetting(files, "kdeglobals", "General", "font");
  return font ? fontFamilyOf(*font) : std::nullopt;
}

} // namespace tavrin
