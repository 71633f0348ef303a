#pragma once

#include "TavrinCore/Kinds/Files/ShelfSettings.h"

#include <filesystem>

namespace tavrin {

/// The rules of what lies on a shelf. A path is kept as `pathText` writes it.
namespace shelf {

/// What of the settings leads to a file, each once, newest first, at most as many as a shelf holds.
std::vector<std::filesystem::path> files(const ShelfSettings& settings);
/// `files` put on top, in their order; one that lies there already moves up, and what exceeds the
/// most a shelf holds falls off at its end.
ShelfSettings adding(const ShelfSettings& settings,
                     const std::vector<std::filesystem::path>& files);
ShelfSettings removing(const ShelfSettings& settings, const std::filesystem::path& file);

} // namespace shelf

} // namespace tavrin
