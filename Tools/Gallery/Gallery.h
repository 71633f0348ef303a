#pragma once

#include "TavrinCore/Base/Date.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelView.h"
#include "TavrinWidgetsUI/Kit/Views/TileLayout.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tavrin {

/// When what is shown is looked at; days and clocks in the evening.
inline constexpr Date galleryNow{800'000'000};
inline constexpr Date galleryEvening = Date::fromUnixSeconds(1'788'984'522);

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

/// Sheets by the names of their files.
struct NamedSheet {
  const char* name;
  GallerySheet (*tiles)();
};
struct NamedPanels {
  const char* name;
  GalleryPanels (*panels)();
};

/// Lists the sheets of the file that has it among its constants.
class GalleryEntry {
public:
  GalleryEntry(const char* name, GallerySheet (*tiles)());
  GalleryEntry(const char* name, GalleryPanels (*panels)());
};

/// All that are listed, by their names.
std::vector<NamedSheet> gallerySheets();
std::vector<NamedPanels> galleryPanels();

/// The panel, as large as its content wants it.
std::unique_ptr<PanelView> laidOut(const GalleryPanel& made, const PanelAppearance& look);

} // namespace tavrin
