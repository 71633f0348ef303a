#pragma once

#include "TavrinCore/Base/Coding.h"
#include "TavrinCore/Kinds/Colour/ColourPickerSettings.h"

namespace tavrin {

/// An opaque colour taken from the screen, 8 bits a channel, in sRGB.
struct PickedColour {
  UUID id;
  /// 0 to 255, also after decoding.
  int red = 0;
  int green = 0;
  int blue = 0;
  Date pickedAt;
  bool isPinned = false;

  /// Hue in degrees 0...360, saturation and lightness 0...1.
  struct HSL {
    double hue = 0;
    double saturation = 0;
    double lightness = 0;
  };
  HSL hsl() const;
  /// Relative luminance 0...1 as WCAG defines it.
  double luminance() const;
  /// Whether words on a swatch of this colour are to be dark.
  bool wantsDarkLabel() const { return luminance() > 0.179; }
  /// What makes two entries the same colour: 0xRRGGBB.
  int packed() const { return red * 65536 + green * 256 + blue; }
  /// Such as "#FF8000", "hsl(30, 100%, 50%)".
  std::string text(ColourFormat format) const;

  static constexpr auto fields() {
    return std::tuple{required("id", &PickedColour::id),
                      required("red", &PickedColour::red).clamped(0, 255),
                      required("green", &PickedColour::green).clamped(0, 255),
                      required("blue", &PickedColour::blue).clamped(0, 255),
                      required("pickedAt", &PickedColour::pickedAt),
                      required("isPinned", &PickedColour::isPinned)};
  }
  bool operator==(const PickedColour&) const = default;
};

} // namespace tavrin
