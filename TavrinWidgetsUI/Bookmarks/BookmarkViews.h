#pragma once

#include "TavrinCore/Kinds/Bookmarks/BookmarkSettings.h"
#include "TavrinCore/Kinds/Bookmarks/Bookmarks.h"
#include "TavrinWidgetsUI/Kit/Views/TileLayout.h"

#include <functional>

namespace tavrin {

class ViewRenderer;

inline constexpr QColor bookmarkTint{0xE8, 0x4F, 0x5E};

/// A site's icon, or null while there is none.
using BookmarkIconOf = std::function<QImage(const std::string& url)>;

/// A site without an icon: its first letter on a colour of its own.
AnyView bookmarkMonogram(const Bookmark& bookmark, double side);
/// The same as a picture of `side` pixels.
QImage bookmarkMonogramImage(ViewRenderer& renderer, const Bookmark& bookmark, int side);

/// A ribbon on a cover, with the number of links.
AnyView bookmarkTileIcon(const BookmarkSettings& settings, const TileSize& size);
/// The first links as icons; a click on one opens it.
AnyView bookmarkWideTile(const BookmarkSettings& settings, const TileSize& size,
                         const BookmarkIconOf& icon,
                         const std::function<void(const std::string& url)>& open);
/// How many links a wide tile shows.
std::size_t bookmarkTileCapacity(const TileSize& size);

} // namespace tavrin
