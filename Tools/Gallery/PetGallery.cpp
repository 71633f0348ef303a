#include "TavrinWidgetsUI/PetViews.h"
#include "Tools/Gallery/DesignedGallery.h"

namespace tavrin {

GallerySheet petGallery() {
  GallerySheet sheet;
  const auto show = [&](const char* name, PetSpecies species, const PetPose& pose, PetSky sky) {
    for (const int span : {1, 2, 4})
      sheet.push_back({name, span, [=](const TileSize& size) {
                         return petTile({species, true, true}, pose, sky, size);
                       }});
  };
  using enum PetActivity;
  show("walking", PetSpecies::cat, {walking, 0, 6, 0, false}, PetSky::day);
  show("sitting", PetSpecies::dog, {sitting, 0, 20, 3, false}, PetSky::dawn);
  show("running", PetSpecies::fox, {running, 1, 30, 9, true}, PetSky::dusk);
  show("happy", PetSpecies::rabbit, {happy, 2, 12, 0, false}, PetSky::day);
  show("asleep", PetSpecies::turtle, {sleeping, 0, 40, 0, false}, PetSky::night);
  show("cat asleep", PetSpecies::cat, {sleeping, 0, 9, 0, false}, PetSky::night);
  return sheet;
}

/// Every frame of every animal.
GallerySheet petFrames() {
  GallerySheet sheet;
  using enum PetActivity;
  for (const auto species : allCases<PetSpecies>())
    for (const PetPose& pose :
         {PetPose{walking, 0}, PetPose{walking, 1}, PetPose{walking, 2}, PetPose{walking, 3},
          PetPose{sitting, 0}, PetPose{sitting, 1}, PetPose{sleeping, 0}, PetPose{happy, 2}})
      sheet.push_back({petName(species).toStdString(), 1, [=](const TileSize& size) {
                         return petTile({species, true, true}, pose, PetSky::day, size);
                       }});
  return sheet;
}

} // namespace tavrin
