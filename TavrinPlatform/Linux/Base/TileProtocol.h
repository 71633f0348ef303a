#pragma once

namespace tavrin {

/// How a tile is watched over the bus: at the path that belongs to the application's name,
/// "Picture" with "ti", the serial number of the picture that the caller has (0 for none) and how
/// many pixels high it wants it. It is answered once there is another picture, with "tsiih": its
/// serial number, its subject, width and height in pixels, and a file of the pixels, ARGB32
/// premultiplied, in rows without gaps. So a caller that is slow skips pictures, and one that went
/// costs one more. Asking anew ends what the same caller still waits for.
inline constexpr const char* tileInterface = "dev.quellby.tavrin.Tile";
inline constexpr const char* tilePictureMethod = "Picture";
/// Pixels; no tile is higher.
inline constexpr int highestTilePicture = 1024;

} // namespace tavrin
