#pragma once

#include <QImage>
#include <filesystem>

namespace tavrin {

/// The vector picture in `file` as a square of `pixels`, its proportions kept, drawn by `program`
/// in a process of its own: what the library for it takes, and what a bad file does to it, ends
/// there. Null where that fails or takes too long. Waits; from any thread.
QImage drawVectorPicture(const std::filesystem::path& program, const std::filesystem::path& file,
                         int pixels);

} // namespace tavrin
