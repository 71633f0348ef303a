#pragma once

#include <filesystem>

namespace tavrin {

/// The file that `file` stands for: itself, or where its symbolic links lead, whether or not
/// anything is there. Throws FileError for links that cannot be followed.
std::filesystem::path followLinks(const std::filesystem::path& file);

/// The folder that a path's last part is in; "." for a path of one part.
std::filesystem::path folderOf(const std::filesystem::path& file);

} // namespace tavrin
