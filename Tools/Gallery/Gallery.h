#pragma once

#include "TavrinWidgetsUI/Kit/Panels/PanelView.h"
#include "TavrinWidgetsUI/Kit/Views/TileLayout.h"

#include <functional>
#include <string>
#include <vector>

namespace tavrin {

/// A named tile to be looked at, made for the size asked for.
struct GalleryTile {
  std::string name;
  int span = 1;
  std::function<AnyView(const TileSize&)> view;
};
using GallerySheet = std::vector<GalleryTile>;

/// A named panel state. What `make` makes may refer to statics of its file.
struct GalleryPanel {
  std::string name;
  QColor tint;
  std::function<PanelView*(const PanelAppearance&)> make;
};
using GalleryPanels = std::vector<GalleryPanel>;

/// One function per family of kinds, in its own file; main.cpp lists them with their file names.
GallerySheet kitGallery();
GallerySheet airDropGallery();
GalleryPanels airDropPanels();
GallerySheet bookmarkGallery();
GalleryPanels bookmarkPanels();
GallerySheet calendarGallery();
GalleryPanels calendarPanels();
GallerySheet clipboardGallery();
GalleryPanels clipboardPanels();
GallerySheet collectionGallery();
GalleryPanels collectionPanels();
GallerySheet colourGallery();
GalleryPanels colourPanels();
GallerySheet converterGallery();
GalleryPanels converterPanels();
GallerySheet emojiGallery();
GalleryPanels emojiPanels();
GallerySheet fanGallery();
GalleryPanels fanPanels();
GallerySheet filesGallery();
GallerySheet filesWideGallery();
GalleryPanels filesPanels();
GallerySheet gitHubGallery();
GalleryPanels gitHubPanels();
GallerySheet keyboardLockGallery();
GalleryPanels keyboardLockPanels();
GallerySheet musicGallery();
GalleryPanels musicPanels();
GallerySheet noteGallery();
GalleryPanels notePanels();
GallerySheet petGallery();
GalleryPanels petPanels();
GallerySheet petFrames();
GallerySheet shortcutGallery();
GalleryPanels shortcutPanels();
GallerySheet systemGallery();
GallerySheet systemWideGallery();
GalleryPanels systemPanels();
GallerySheet timeGallery();
GallerySheet timeWideGallery();
GalleryPanels timePanels();
GallerySheet timersGallery();
GalleryPanels timersPanels();
GallerySheet usageGallery();
GallerySheet usageWideGallery();
GalleryPanels usagePanels();
GallerySheet waterGallery();
GalleryPanels waterPanels();
GallerySheet weatherGallery();
GalleryPanels weatherPanels();

} // namespace tavrin
