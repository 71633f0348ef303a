#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace tavrin {

/// The first `maximumSize` bytes of `file`, or as many as it holds. No value for anything but a
/// regular file that can be read; such a thing is not even opened.
std::optional<std::string> readBeginning(const std::filesystem::path& file,
                                         std::size_t maximumSize);

} // namespace tavrin
