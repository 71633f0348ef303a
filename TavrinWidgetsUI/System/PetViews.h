#pragma once

#include "TavrinCore/Kinds/System/PetSettings.h"
#include "TavrinWidgetsUI/Kit/Views/TileLayout.h"
#include "TavrinWidgetsUI/System/PetSprites.h"

namespace tavrin {

inline constexpr QColor petTint{0x6F, 0xB5, 0x4A};

/// The meadow that fills a view of `size` points: its pixels, and how many points one of them has.
struct PetCanvas {
  QSize pixels;
  double unit = 1;
};
PetCanvas petCanvas(QSizeF size);

/// A meadow with the pet in it, in all the room offered.
AnyView petMeadow(PetSpecies species, const PetPose& pose, PetSky sky);

/// The same for a square tile and a wide one, on which it has room to walk.
AnyView petTile(const PetSettings& settings, const PetPose& pose, PetSky sky, const TileSize& size);

/// "Cat", "Asleep", for panels and assistive technology.
QString petName(PetSpecies species);
QString petWords(const PetPose& pose);

} // namespace tavrin
