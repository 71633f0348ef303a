#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace tavrin {

/// What a file holds, as far as its name tells.
enum class FileKind {
  picture,
  video,
  audio,
  document,
  sheet,
  slides,
  text,
  code,
  archive,
  program,
  other,
};

FileKind fileKind(std::string_view name);
/// The ending in capitals, at most `longest` characters: "PDF". Empty where there is none, or one
/// that is longer or no letters and digits.
std::string fileEnding(std::string_view name, std::size_t longest = 4);
/// Whether a program writes to a file of this name while it fetches another one.
bool isPartialDownload(std::string_view name);
/// Hidden files, and the copies that editors leave beside their files.
bool isHiddenName(std::string_view name);
/// A file's name as it can be shown: on one line, in UTF-8, with U+FFFD for what is none.
std::string shownName(const std::filesystem::path& path);
/// A folder's path as users write it: "~/Downloads" under their home.
std::string shownFolder(const std::filesystem::path& folder, const std::filesystem::path& home);

/// A file's beginning as text to look at: UTF-8 without the marks that no text has. No value where
/// it is none. `isCut` says that the file goes on behind it, perhaps inside a character.
std::optional<std::string> textPreview(std::string_view beginning, bool isCut);

} // namespace tavrin
