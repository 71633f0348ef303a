#pragma once

#include "Tools/Gallery/Gallery.h"

namespace tavrin {

GallerySheet converterGallery();
GalleryPanels converterPanels();
GallerySheet emojiGallery();
GalleryPanels emojiPanels();
GallerySheet bookmarkGallery();
GalleryPanels bookmarkPanels();
GallerySheet petGallery();
GalleryPanels petPanels();
GallerySheet petFrames();

} // namespace tavrin
