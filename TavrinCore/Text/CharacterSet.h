#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tavrin {

/// The name after "charset" in a content type such as "text/html; charset=utf-8"; empty without
/// one.
std::string_view characterSetIn(std::string_view contentType);

/// `bytes` in the character set of that name as UTF-8, with U+FFFD for what is none of it. Names as
/// web pages write them: what they call Latin-1 or ASCII is read as windows-1252. No value for a
/// name that is not known.
std::optional<std::string> textFrom(std::string_view bytes, std::string_view characterSet);

/// The bytes of a character in windows-1252 between 0x80 and 0x9F as pages mean them.
char32_t windowsCharacter(unsigned char byte);

} // namespace tavrin
