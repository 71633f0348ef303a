#include "Tools/Gallery/Gallery.h"

#include <QCoreApplication>
#include <algorithm>
#include <string_view>

namespace tavrin {
namespace {

// Functions, since they are filled before main begins.
std::vector<NamedSheet>& listedSheets() {
  static std::vector<NamedSheet> all;
  return all;
}
std::vector<NamedPanels>& listedPanels() {
  static std::vector<NamedPanels> all;
  return all;
}

template <class Named> std::vector<Named> sorted(std::vector<Named> all) {
  std::ranges::sort(all, {}, [](const Named& one) { return std::string_view(one.name); });
  return all;
}

} // namespace

GalleryEntry::GalleryEntry(const char* name, GallerySheet (*tiles)()) {
  listedSheets().push_back({name, tiles});
}

GalleryEntry::GalleryEntry(const char* name, GalleryPanels (*panels)()) {
  listedPanels().push_back({name, panels});
}

std::vector<NamedSheet> gallerySheets() {
  return sorted(listedSheets());
}

std::vector<NamedPanels> galleryPanels() {
  return sorted(listedPanels());
}

std::unique_ptr<PanelView> laidOut(const GalleryPanel& made, const PanelAppearance& look) {
  std::unique_ptr<PanelView> panel(made.make(look));
  panel->setAttribute(Qt::WA_DontShowOnScreen);
  panel->show();
  panel->refresh();
  // What a panel does once it is shown may ask for another layout.
  QCoreApplication::processEvents();
  QCoreApplication::processEvents();
  panel->resize(panel->fittingSize());
  QCoreApplication::processEvents();
  return panel;
}

} // namespace tavrin
