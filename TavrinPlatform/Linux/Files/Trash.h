#pragma once

#include <filesystem>

namespace tavrin {

/// Puts `file` into `homeTrash` where it is on the same disk, else into the trash at its own disk's
/// top (the trash of freedesktop.org, version 1.0), never by copying. False, with the file where it
/// was, when that cannot be done.
bool moveToTrash(const std::filesystem::path& file, const std::filesystem::path& homeTrash);

/// Puts back the file that `moveToTrash` took last from the path `file`. False, with nothing
/// changed, where the trash has none, or where something has that path.
bool restoreFromTrash(const std::filesystem::path& file, const std::filesystem::path& homeTrash);

} // namespace tavrin
