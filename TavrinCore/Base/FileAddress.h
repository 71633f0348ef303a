#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace tavrin {

/// The file that a "file:" address of this computer names; no value for any other address.
std::optional<std::filesystem::path> localFile(std::string_view url);

/// `text` with each "%41" as the byte it stands for; a stray "%" stands for itself.
std::string percentDecoded(std::string_view text);

} // namespace tavrin
