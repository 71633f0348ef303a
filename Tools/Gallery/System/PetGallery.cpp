#include "TavrinCore/Kinds/System/PetSettings.h"
#include "TavrinWidgetsUI/System/PetPanelView.h"
#include "TavrinWidgetsUI/System/PetViews.h"
#include "Tools/Gallery/Gallery.h"
#include "Tools/Gallery/System/SystemStand.h"

namespace tavrin {
namespace {

constexpr Date midnight = Date::fromUnixSeconds(1'788'912'000);

GalleryPanel panelOf(const char* name, const PetSettings& settings, double hour, bool isStroked) {
  return {name, petTint, [=](const PanelAppearance& look) {
            auto& model = systemStand("Minka", settings, midnight + hour * 3600).model;
            model.start();
            if (isStroked)
              model.strokePet();
            return new PetPanelView(look, {model, [] {}, [](const PetSettings&) {}, [] {}});
          }};
}

} // namespace

GalleryPanels petPanels() {
  return {panelOf("day", {}, 10, false),
          panelOf("happy", {PetSpecies::rabbit, false, true}, 17, true),
          panelOf("night", {PetSpecies::turtle, true, true}, 1, false),
          panelOf("awake at night", {PetSpecies::fox, true, false}, 23, false)};
}

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

const GalleryEntry petEntries[] = {
    {"pet-panels", petPanels}, {"pet", petGallery}, {"pet-frames", petFrames}};

} // namespace tavrin
