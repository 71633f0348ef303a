#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tavrin {

/// `text` (UTF-8) without white space and line breaks at its ends.
std::string_view trimmed(std::string_view text);

/// `text` without any of `characters` (ASCII) at its ends.
std::string_view trimmed(std::string_view text, std::string_view characters);

/// `text` without the spaces and tabs that it begins with.
std::string_view withoutLeadingBlanks(std::string_view text);

/// Takes the first line off `text`, and its line feed, which is not in the answer.
std::string_view takeLine(std::string_view& text);

/// The beginning of `text` (UTF-8), at most `longest` bytes of it, no character cut.
std::string_view beginning(std::string_view text, std::size_t longest);

/// Whether `text` is well-formed UTF-8.
bool isUTF8(std::string_view text);

/// `text` with A to Z as a to z.
std::string asciiLowered(std::string_view text);

/// `text` with every byte that is not UTF-8 replaced by U+FFFD, at most `longest` code points.
std::string cleanText(std::string_view text, std::size_t longest);

/// `text` as one line of at most `longest` code points: runs of white space and controls become one
/// space, bytes that are not UTF-8 go.
std::string oneLine(std::string_view text, std::size_t longest);

/// `text` with "%41" as "A"; what is no such escape stays.
std::string percentDecoded(std::string_view text);

} // namespace tavrin
