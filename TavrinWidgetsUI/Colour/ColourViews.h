#pragma once

#include "TavrinCore/Kinds/Colour/ColourHistory.h"
#include "TavrinCore/Kinds/Colour/ColourPickerSettings.h"
#include "TavrinWidgetsUI/Kit/Views/TileLayout.h"

#include <functional>

namespace tavrin {

inline constexpr QColor colourPickerTint{0xE0, 0x56, 0xC8};

QColor colourOf(const PickedColour& colour);
/// Ink for words on a swatch of `colour`.
QColor swatchInk(const PickedColour& colour);
QString colourText(const PickedColour& colour, ColourFormat format);

/// A swatch card: the newest colour with the dropper, below it the ones before.
AnyView colourTileIcon(const ColourHistory& history, const ColourPickerSettings& settings,
                       const TileSize& size);
AnyView colourWideTile(const ColourHistory& history, const ColourPickerSettings& settings,
                       const TileSize& size, const std::function<void()>& pick,
                       const std::function<void()>& copy);

/// A large swatch with its value on it, for the panel.
AnyView colourCard(const PickedColour& colour, ColourFormat format);

} // namespace tavrin
