#pragma once

#include <string_view>

namespace tavrin {

/// What a file of points is by its first bytes: png, jpeg, gif, bmp, webp, tiff, ppm, ico or xpm;
/// empty for everything else. A decoder named by it is the only one that need be loaded.
std::string_view pictureFormat(std::string_view bytes);

} // namespace tavrin
