#include "TavrinPlatform/Linux/Base/InterfaceFont.h"

#include "TavrinCore/Text/Text.h"
#include "TavrinPlatform/Linux/Base/ToolkitSettings.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>

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

std::optional<double> fontSizeOf(std::string_view description) {
  const auto comma = description.find(',');
  std::string_view size;
  if (comma != std::string_view::npos) {
    size = description.substr(comma + 1);
    size = size.substr(0, size.find(','));
  } else if (const auto space = description.rfind(' '); space != std::string_view::npos) {
    size = description.substr(space + 1);
  }
  double points = 0;
  const auto [end, error] = std::from_chars(size.data(), size.data() + size.size(), points);
  constexpr double pointsOfPixel = 0.75;
  if (error != std::errc() || !(points > 0))
    return std::nullopt;
  const std::string_view unit(end, static_cast<std::size_t>(size.data() + size.size() - end));
  return unit == "px" ? points * pointsOfPixel : points;
}

double textScaleOf(double points) {
  constexpr double least = 9;
  constexpr double most = 11;
  return points > most ? points / most : points < least ? points / least : 1;
}

std::string fontInSettings(const FileManager& files) {
  return toolkitSetting(files, "kdeglobals", "General", "font").value_or("");
}

std::optional<std::string> fontFamilyInSettings(const FileManager& files) {
  return fontFamilyOf(fontInSettings(files));
}

} // namespace tavrin
