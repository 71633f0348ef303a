#pragma once

#include "TavrinCore/Base/Data.h"

#include <QImage>
#include <optional>

namespace tavrin {

/// The picture in `data` no larger than `side` pixels; null where it cannot be read, is no picture
/// of pixels, or would take more memory than a picture of a screen. For any thread.
QImage thumbnail(const Data& data, int side);

/// The same as a small file to be kept: a JPEG, or a PNG where something shows through. For any
/// thread.
std::optional<Data> thumbnailFile(const Data& data, int side);

} // namespace tavrin
