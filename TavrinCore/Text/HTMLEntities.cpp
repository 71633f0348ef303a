#include "TavrinCore/Text/CharacterSet.h"
#include "TavrinCore/Text/HTMLReader.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <unicode/utf8.h>

namespace tavrin {
namespace {

constexpr char32_t unknown = 0xFFFD;

/// From U+00A0 to U+00FF.
constexpr std::array<std::string_view, 96> latin{
    "nbsp",   "iexcl",  "cent",   "pound",  "curren", "yen",    "brvbar", "sect",   "uml",
    "copy",   "ordf",   "laquo",  "not",    "shy",    "reg",    "macr",   "deg",    "plusmn",
    "sup2",   "sup3",   "acute",  "micro",  "para",   "middot", "cedil",  "sup1",   "ordm",
    "raquo",  "frac14", "frac12", "frac34", "iquest", "Agrave", "Aacute", "Acirc",  "Atilde",
    "Auml",   "Aring",  "AElig",  "Ccedil", "Egrave", "Eacute", "Ecirc",  "Euml",   "Igrave",
    "Iacute", "Icirc",  "Iuml",   "ETH",    "Ntilde", "Ograve", "Oacute", "Ocirc",  "Otilde",
    "Ouml",   "times",  "Oslash", "Ugrave", "Uacute", "Ucirc",  "Uuml",   "Yacute", "THORN",
    "szlig",  "agrave", "aacute", "acirc",  "atilde", "auml",   "aring",  "aelig",  "ccedil",
    "egrave", "eacute", "ecirc",  "euml",   "igrave", "iacute", "icirc",  "iuml",   "eth",
    "ntilde", "ograve", "oacute", "ocirc",  "otilde", "ouml",   "divide", "oslash", "ugrave",
    "uacute", "ucirc",  "uuml",   "yacute", "thorn",  "yuml"};

constexpr auto others = std::to_array<std::pair<std::string_view, char32_t>>(
    {{"amp", '&'},       {"AMP", '&'},       {"lt", '<'},        {"LT", '<'},
     {"gt", '>'},        {"GT", '>'},        {"quot", '"'},      {"QUOT", '"'},
     {"apos", '\''},     {"OElig", 0x152},   {"oelig", 0x153},   {"Scaron", 0x160},
     {"scaron", 0x161},  {"Yuml", 0x178},    {"circ", 0x2C6},    {"tilde", 0x2DC},
     {"ensp", 0x2002},   {"emsp", 0x2003},   {"thinsp", 0x2009}, {"zwnj", 0x200C},
     {"zwj", 0x200D},    {"ndash", 0x2013},  {"mdash", 0x2014},  {"lsquo", 0x2018},
     {"rsquo", 0x2019},  {"sbquo", 0x201A},  {"ldquo", 0x201C},  {"rdquo", 0x201D},
     {"bdquo", 0x201E},  {"dagger", 0x2020}, {"bull", 0x2022},   {"hellip", 0x2026},
     {"permil", 0x2030}, {"prime", 0x2032},  {"lsaquo", 0x2039}, {"rsaquo", 0x203A},
     {"euro", 0x20AC},   {"trade", 0x2122},  {"larr", 0x2190},   {"uarr", 0x2191},
     {"rarr", 0x2192},   {"darr", 0x2193},   {"harr", 0x2194},   {"minus", 0x2212},
     {"infin", 0x221E},  {"asymp", 0x2248},  {"ne", 0x2260},     {"le", 0x2264},
     {"ge", 0x2265},     {"num", '#'},       {"excl", '!'},      {"comma", ','},
     {"period", '.'},    {"colon", ':'},     {"semi", ';'},      {"lpar", '('},
     {"rpar", ')'},      {"lsqb", '['},      {"rsqb", ']'},      {"verbar", '|'},
     {"vert", '|'},      {"sol", '/'},       {"bsol", '\\'},     {"commat", '@'},
     {"dollar", '$'},    {"percnt", '%'},    {"equals", '='},    {"plus", '+'},
     {"ast", '*'},       {"lowbar", '_'},    {"Tab", '\t'},      {"NewLine", '\n'}});

struct Reference {
  char32_t character;
  /// Of the whole reference, "&" and ";" included.
  std::size_t length;
};

bool isWordCharacter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

std::optional<char32_t> named(std::string_view name) {
  if (const auto* found = std::ranges::find(latin, name); found != latin.end())
    return 0xA0U + static_cast<char32_t>(found - latin.begin());
  const auto* found =
      std::ranges::find(others, name, &std::pair<std::string_view, char32_t>::first);
  return found == others.end() ? std::nullopt : std::optional(found->second);
}

char32_t meant(std::uint32_t number) {
  if (number < 0x100)
    return number == 0 ? unknown : windowsCharacter(static_cast<unsigned char>(number));
  return number > 0x10FFFF || (number >= 0xD800 && number < 0xE000) ? unknown : number;
}

/// `text` begins with "&#".
std::optional<Reference> numeric(std::string_view text) {
  const bool isHex = text.size() > 2 && (text[2] == 'x' || text[2] == 'X');
  const char* const start = text.data() + (isHex ? 3 : 2);
  const char* const end = text.data() + text.size();
  std::uint32_t number = 0;
  const auto [stop, error] = std::from_chars(start, end, number, isHex ? 16 : 10);
  if (stop == start)
    return std::nullopt;
  const bool isClosed = stop != end && *stop == ';';
  return Reference{error == std::errc() ? meant(number) : unknown,
                   static_cast<std::size_t>(stop - text.data()) + (isClosed ? 1 : 0)};
}

/// The reference that `text` begins with.
std::optional<Reference> referenceAt(std::string_view text) {
  constexpr std::size_t longestName = 8;
  if (text.size() > 1 && text[1] == '#')
    return numeric(text);
  std::size_t length = 1;
  while (length < text.size() && length <= longestName && isWordCharacter(text[length]))
    ++length;
  const auto character = named(text.substr(1, length - 1));
  if (!character)
    return std::nullopt;
  if (length < text.size() && text[length] == ';')
    return Reference{*character, length + 1};
  // Without its end only these four, and not in the query of an address.
  const bool isBasic = *character < 0x80 && (length == text.size() || text[length] != '=');
  return isBasic ? std::optional(Reference{*character, length}) : std::nullopt;
}

void append(std::string& out, char32_t character) {
  std::array<std::uint8_t, U8_MAX_LENGTH> bytes{};
  std::size_t length = 0;
  U8_APPEND_UNSAFE(bytes.data(), length, character);
  out.append(reinterpret_cast<const char*>(bytes.data()), length);
}

} // namespace

std::string withoutEntities(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  while (!text.empty()) {
    const auto plain = std::min(text.find('&'), text.size());
    out.append(text.substr(0, plain));
    text.remove_prefix(plain);
    if (text.empty())
      break;
    if (const auto reference = referenceAt(text)) {
      append(out, reference->character);
      text.remove_prefix(reference->length);
    } else {
      out += '&';
      text.remove_prefix(1);
    }
  }
  return out;
}

} // namespace tavrin
