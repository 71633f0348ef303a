#include "TavrinCore/Text/ForeignText.h"

#include "TavrinCore/Text/CodePoints.h"
#include "TavrinCore/Text/Texts.h"

#include <algorithm>
#include <unicode/uchar.h>
#include <utility>

namespace tavrin {
namespace {

constexpr std::string_view replacement = "\uFFFD";

enum class Role { read, steers, hints };

Role roleOf(UChar32 character) {
  if (character < 0 || u_charType(character) == U_CONTROL_CHAR)
    return Role::steers;
  switch (character) {
  case 0x061C: // Arabic letter mark
  case 0x200E: // left-to-right mark
  case 0x200F: // right-to-left mark
  case 0xFEFF: // byte order mark
    return Role::hints;
  case 0x2028: // line separator
  case 0x2029: // paragraph separator
    return Role::steers;
  default:
    break;
  }
  const bool turns = (character >= 0x202A && character <= 0x202E) ||
                     (character >= 0x2066 && character <= 0x2069) ||
                     (character >= 0x206A && character <= 0x206F) || // deprecated controls
                     (character >= 0xFFF9 && character <= 0xFFFB);   // annotation controls
  return turns ? Role::steers : Role::read;
}

/// Appends what `character` is shown as.
void append(std::string& out, UChar32 character, std::string_view bytes,
            std::string_view lineBreak) {
  if (character == '\n') {
    out += lineBreak;
    return;
  }
  if (character == '\t') {
    out += ' ';
    return;
  }
  const Role role = roleOf(character);
  if (role != Role::hints)
    out += role == Role::read ? bytes : replacement;
}

constexpr UChar32 firstStrongIsolate = 0x2068;
constexpr UChar32 popDirectionalIsolate = 0x2069;
constexpr UChar32 rightToLeftMark = 0x200F;

/// Which marks of a text from right to left are its own, and reach no further than it does:
/// isolates that close each other on each line, and of a text that has any, the mark that a line
/// or an isolate begins with.
class OwnMarks {
public:
  explicit OwnMarks(std::string_view text) : hasOwn_(isRightToLeft() && hasClosedIsolates(text)) {}

  /// To be asked of each character in turn.
  bool holds(UChar32 character) {
    const bool isFirst =
        std::exchange(isAtStart_, character == '\n' || character == firstStrongIsolate);
    return hasOwn_ && (character == firstStrongIsolate || character == popDirectionalIsolate ||
                       (isFirst && character == rightToLeftMark));
  }

private:
  static bool hasClosedIsolates(std::string_view text) {
    int open = 0;
    bool isClosed = true;
    bool hasAny = false;
    forEachCharacter(text, [&](UChar32 character, std::string_view) {
      hasAny |= character == firstStrongIsolate;
      open += character == firstStrongIsolate ? 1 : character == popDirectionalIsolate ? -1 : 0;
      isClosed = open >= 0 && (character != '\n' || open == 0);
      return isClosed;
    });
    return hasAny && isClosed && open == 0;
  }

  bool hasOwn_;
  bool isAtStart_ = true;
};

} // namespace

std::string plainText(std::string_view text, std::size_t longest) {
  std::string out;
  out.reserve(std::min(text.size(), longest));
  std::size_t count = 0;
  OwnMarks own(text);
  forEachCharacter(text, [&](UChar32 character, std::string_view bytes) {
    if (count++ == longest) {
      out += "…";
      return false;
    }
    if (own.holds(character))
      out += bytes;
    else
      append(out, character, bytes, "\n");
    return true;
  });
  return out;
}

std::string printable(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  OwnMarks own(text);
  forEachCharacter(text, [&](UChar32 character, std::string_view bytes) {
    if (own.holds(character))
      out += bytes;
    else
      append(out, character, bytes, "⏎");
    return true;
  });
  return out;
}

std::string isolated(std::string_view text) {
  // A name that steers would reach out of its isolate.
  return isRightToLeft() ? "\u2068" + plainText(text) + "\u2069" : std::string(text);
}

std::string markupEscaped(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (const char c : text)
    switch (c) {
    case '&':
      out += "&amp;";
      break;
    case '<':
      out += "&lt;";
      break;
    case '>':
      out += "&gt;";
      break;
    default:
      out += c;
    }
  return out;
}

} // namespace tavrin
