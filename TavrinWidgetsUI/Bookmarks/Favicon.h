#pragma once

#include <QImage>
#include <string_view>

namespace tavrin {

/// A site's icon from what its server sent: an icon file, PNG, JPEG or GIF. A square of `side`
/// pixels; of several pictures the least one that is large enough. Null where it cannot be read or
/// is unreasonably large. For any thread.
QImage faviconFrom(std::string_view bytes, int side);

} // namespace tavrin
