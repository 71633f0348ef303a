#pragma once

#include <filesystem>
#include <string>

namespace tavrin {

/// Whether `text` is another than the one that was told last, by any process that keeps to `file`;
/// from now on it is the one that was told. False where that cannot be noted down.
bool isNews(const std::filesystem::path& file, const std::string& text);

} // namespace tavrin
