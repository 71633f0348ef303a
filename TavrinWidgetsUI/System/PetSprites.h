#pragma once

#include "TavrinCore/Kinds/System/Pet.h"
#include "TavrinCore/Kinds/System/PetSettings.h"
#include "TavrinCore/Kinds/System/PetSky.h"

#include <QImage>

namespace tavrin {

/// The pixels that every pet fits into, standing on their lower edge.
inline constexpr int petWidth = 22;
inline constexpr int petHeight = 20;

/// A pet alone on a transparent ground, one pixel a pixel.
QImage petSprite(PetSpecies species, const PetPose& pose);

/// A pet in its meadow, `size` pixels large; it stands `pose.place` pixels from the left where
/// there is room for that, else in the middle.
QImage petScene(PetSpecies species, const PetPose& pose, PetSky sky, QSize size);
/// How many pixels a pet can walk in a meadow that wide; none in one that is hardly wider than it.
int petRoom(int width);

} // namespace tavrin
