#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tavrin {

/// Text from outside, from a name in a file to a page's title, made harmless before it is shown or
/// handed on. Characters that steer instead of being read become U+FFFD: controls, and those that
/// turn the direction of what stands around them (Unicode Standard Annex 9: embeddings, overrides
/// and isolates), which can make "gpj.exe" read as "exe.jpg". The invisible marks that only hint at
/// a direction, and byte order marks, are left out. Where texts are in a language that is written
/// from right to left, first-strong isolates stay if all of them are closed: its sentences hold
/// names in them (Texts.h). Bytes that are not UTF-8 become U+FFFD.

/// The most of a foreign text that is shown or handed on in one place, in code points.
inline constexpr std::size_t longestShown = 4096;

/// Its lines as they are, a tab as a space; what is longer than `longest` code points ends in "…".
std::string plainText(std::string_view text, std::size_t longest = longestShown);

/// On one line: line breaks become "⏎". For terminals and logs, where a text can neither break a
/// line nor speak to the terminal.
std::string printable(std::string_view text);

/// `text` on a line that is written from right to left: as plainText has it, and isolated from the
/// direction of what stands around it. In other languages as it is.
std::string isolated(std::string_view text);

/// `text` as the content of an element in a markup of the XML family, where it then says itself:
/// "&", "<" and ">" as entities.
std::string markupEscaped(std::string_view text);

} // namespace tavrin
