#pragma once

#include "TavrinCore/Dock/DockItem.h"
#include "TavrinCore/Kinds/Collection/CollectionLayout.h"

namespace tavrin {

/// A set of applications to start from one tile.
struct CollectionSettings {
  static constexpr std::string_view kindKey = "collection";

  std::vector<AppEntry> apps;
  CollectionLayout layout = CollectionLayout::grid;

  static constexpr auto fields() {
    return std::tuple{required("apps", &CollectionSettings::apps)
                          .titled("Apps")
                          .helped("The applications that the tile starts, in its order.")
                          .as(FieldRole::application),
                      optional("layout", &CollectionSettings::layout)
                          .titled("Layout")
                          .helped("How the applications stand on the tile.")};
  }
  bool operator==(const CollectionSettings&) const = default;
};

} // namespace tavrin
