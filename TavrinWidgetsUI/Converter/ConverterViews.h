#pragma once

#include "TavrinCore/Kinds/Converter/ConverterSettings.h"
#include "TavrinCore/Kinds/Converter/ConverterUnits.h"
#include "TavrinCore/Kinds/Converter/NumberNotation.h"
#include "TavrinWidgetsUI/Kit/Views/TileLayout.h"

#include <functional>

namespace tavrin {

inline constexpr QColor converterTint{0x2B, 0xB5, 0x9A};

/// "1.609 km", in the notation given.
QString quantityText(double value, const ConverterUnit& unit, const NumberNotation& notation,
                     int digits);

/// A card of two bands: what is converted above, what it comes to below.
AnyView converterTileIcon(const ConverterSettings& settings, const NumberNotation& notation,
                          const TileSize& size);

AnyView converterWideTile(const ConverterSettings& settings, const NumberNotation& notation,
                          const TileSize& size, const std::function<void()>& swap);

} // namespace tavrin
