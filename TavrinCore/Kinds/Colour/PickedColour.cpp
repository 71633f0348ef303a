#include "TavrinCore/Kinds/Colour/PickedColour.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>

namespace tavrin {
namespace {

double linear(int channel) {
  const double share = channel / 255.0;
  return share <= 0.03928 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
}

} // namespace

PickedColour::HSL PickedColour::hsl() const {
  const double r = red / 255.0;
  const double g = green / 255.0;
  const double b = blue / 255.0;
  const double most = std::max({r, g, b});
  const double least = std::min({r, g, b});
  HSL result{0, 0, (most + least) / 2};
  if (most == least)
    return result;
  const double range = most - least;
  result.saturation = range / (result.lightness > 0.5 ? 2 - most - least : most + least);
  const double sixths = most == r   ? (g - b) / range + (g < b ? 6 : 0)
                        : most == g ? (b - r) / range + 2
                                    : (r - g) / range + 4;
  result.hue = 60 * sixths;
  return result;
}

double PickedColour::luminance() const {
  return 0.2126 * linear(red) + 0.7152 * linear(green) + 0.0722 * linear(blue);
}

std::string PickedColour::text(ColourFormat format) const {
  switch (format) {
  case ColourFormat::hex:
    return fmt::format("#{:02X}{:02X}{:02X}", red, green, blue);
  case ColourFormat::hexLowercase:
    return fmt::format("#{:02x}{:02x}{:02x}", red, green, blue);
  case ColourFormat::rgb:
    return fmt::format("rgb({}, {}, {})", red, green, blue);
  case ColourFormat::hsl: {
    const HSL parts = hsl();
    return fmt::format("hsl({:.0f}, {:.0f}%, {:.0f}%)", parts.hue, parts.saturation * 100,
                       parts.lightness * 100);
  }
  case ColourFormat::swiftUI:
    return fmt::format("Color(red: {:.3f}, green: {:.3f}, blue: {:.3f})", red / 255.0,
                       green / 255.0, blue / 255.0);
  case ColourFormat::nsColor:
    return fmt::format("NSColor(srgbRed: {:.3f}, green: {:.3f}, blue: {:.3f}, alpha: 1)",
                       red / 255.0, green / 255.0, blue / 255.0);
  case ColourFormat::cssVariable:
    return fmt::format("--colour: #{:02x}{:02x}{:02x};", red, green, blue);
  }
  return {};
}


} // namespace tavrin
