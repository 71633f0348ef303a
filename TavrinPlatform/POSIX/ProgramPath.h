#pragma once

#include <filesystem>

namespace tavrin {

/// The file that this process was started from, links resolved; empty where the system does not
/// tell.
std::filesystem::path programPath();

} // namespace tavrin
