#pragma once

#include "TavrinCore/Base/Data.h"

#include <QImage>
#include <filesystem>
#include <optional>
#include <string_view>

namespace tavrin {

/// The picture in `bytes`, no larger than `side` pixels either way, upright as its camera says.
/// Null where it cannot be read or is of none of the formats for pictures of points, or would take
/// more memory than a picture of some screens. From any thread.
QImage thumbnail(std::string_view bytes, int side);
/// The same as a small file to be kept: a JPEG, or a PNG where something shows through.
std::optional<Data> packedThumbnail(std::string_view bytes, int side);
/// The same of a file, read at once. Never opens anything but a regular file; null for one longer
/// than 64 MB.
QImage fileThumbnail(const std::filesystem::path& file, int side);

} // namespace tavrin
