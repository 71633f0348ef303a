#include "TavrinCore/Kinds/ClipboardItem.h"

#include "TavrinCore/Base/FileAddress.h"
#include "TavrinCore/Base/Text.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>
#include <unicode/uchar.h>
#include <unicode/utf8.h>

namespace tavrin {
namespace {

constexpr std::size_t longestPreview = 200;

/// Calls `each` with every code point; a negative one where the bytes are not UTF-8.
template <class Each> void forEachCharacter(std::string_view text, const Each& each) {
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  const auto length = static_cast<std::int64_t>(text.size());
  for (std::int64_t i = 0; i < length;) {
    UChar32 character = 0;
    const std::int64_t start = i;
    U8_NEXT(bytes, i, length, character);
    if (!each(character,
              text.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(i - start))))
      return;
  }
}

std::string oneLine(std::string_view text) {
  std::string line;
  std::size_t count = 0;
  bool hasGap = false;
  forEachCharacter(text, [&](UChar32 character, std::string_view bytes) {
    if (character < 0 || u_isUWhiteSpace(character) || u_iscntrl(character)) {
      hasGap = !line.empty();
      return true;
    }
    if (count == longestPreview)
      return false;
    line.append(std::exchange(hasGap, false) ? " " : "").append(bytes);
    ++count;
    return true;
  });
  return line;
}

std::string lowered(std::string_view text) {
  std::string out(text);
  std::ranges::transform(out, out.begin(), [](char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
  });
  return out;
}

/// The scheme's rest: host, port and path. Empty where it is no web address.
std::string_view afterScheme(std::string_view url) {
  for (const std::string_view scheme : {"https://", "http://"})
    if (lowered(url.substr(0, scheme.size())) == scheme)
      return url.substr(scheme.size());
  return {};
}

std::string hostOf(std::string_view url) {
  auto rest = afterScheme(url);
  rest = rest.substr(0, rest.find_first_of("/?#"));
  if (const auto at = rest.rfind('@'); at != std::string_view::npos)
    rest.remove_prefix(at + 1);
  if (rest.starts_with('['))
    return std::string(rest.substr(0, rest.find(']') + 1));
  return lowered(rest.substr(0, rest.find(':')));
}

} // namespace

std::string cleanText(std::string_view text, std::size_t longest) {
  std::string clean;
  clean.reserve(std::min(text.size(), longest));
  std::size_t count = 0;
  forEachCharacter(text, [&](UChar32 character, std::string_view bytes) {
    if (count++ == longest)
      return false;
    clean.append(character < 0 ? std::string_view("\xEF\xBF\xBD") : bytes);
    return true;
  });
  return clean;
}

std::string byteText(std::int64_t bytes) {
  constexpr std::array<const char*, 4> units{"KB", "MB", "GB", "TB"};
  if (bytes < 1000)
    return fmt::format("{} B", bytes);
  double amount = static_cast<double>(bytes) / 1000;
  std::size_t unit = 0;
  for (; amount >= 999.5 && unit + 1 < units.size(); ++unit)
    amount /= 1000;
  return fmt::format("{:.{}f} {}", amount, amount < 9.95 ? 1 : 0, units[unit]);
}

ClipboardItem ClipboardItem::ofText(std::string_view text) {
  ClipboardItem item;
  item.text = cleanText(text, longestText);
  item.byteSize = static_cast<std::int64_t>(item.text->size());
  item.isSensitive = looksSensitive(*item.text);
  return item;
}

ClipboardItem ClipboardItem::ofImage(std::optional<Data> data, std::int64_t size) {
  ClipboardItem item;
  item.kind = Kind::image;
  item.imageData = std::move(data);
  item.byteSize = size;
  return item;
}

ClipboardItem ClipboardItem::ofFile(std::string url, std::int64_t size) {
  ClipboardItem item;
  item.kind = Kind::file;
  item.fileURL = std::move(url);
  item.byteSize = size;
  return item;
}

bool ClipboardItem::looksSensitive(std::string_view text) {
  const auto bare = trimmed(text);
  std::size_t count = 0;
  bool hasUpper = false;
  bool hasLower = false;
  bool hasDigit = false;
  bool hasOther = false;
  bool hasGap = false;
  forEachCharacter(bare, [&](UChar32 character, std::string_view) {
    ++count;
    hasGap |= character == ' ' || character == '\n';
    if (character >= 0 && u_isupper(character))
      hasUpper = true;
    else if (character >= 0 && u_islower(character))
      hasLower = true;
    else if (character >= 0 && u_isdigit(character))
      hasDigit = true;
    else
      hasOther = true;
    return !hasGap;
  });
  const int classes = int{hasUpper} + int{hasLower} + int{hasDigit} + int{hasOther};
  return count >= 8 && !hasGap && classes >= 3 && (hasDigit || hasOther);
}

bool ClipboardItem::looksLikeURL(std::string_view text) {
  const auto bare = trimmed(text);
  constexpr std::size_t longestURL = 2048;
  const bool isPlain = std::ranges::all_of(bare, [](char c) {
    return c > ' ' && c != 0x7F && c != '"' && c != '<' && c != '>' && c != '\\';
  });
  return bare.size() <= longestURL && isPlain && !hostOf(bare).empty();
}

bool ClipboardItem::isFetchableHost(std::string_view url) {
  const std::string host = hostOf(trimmed(url));
  const auto dot = host.rfind('.');
  if (host.empty() || host.starts_with('[') || dot == std::string::npos || dot + 1 >= host.size())
    return false;
  for (const std::string_view suffix :
       {".local", ".localhost", ".internal", ".lan", ".home", ".intranet", ".test", ".invalid",
        ".example", ".onion", ".home.arpa"})
    if (host.ends_with(suffix))
      return false;
  // Names end in a word; addresses end in a number, also in their odd spellings.
  return host[dot + 1] < '0' || host[dot + 1] > '9';
}

std::string ClipboardItem::fileName() const {
  if (!fileURL)
    return {};
  std::string_view path = *fileURL;
  while (path.ends_with('/'))
    path.remove_suffix(1);
  return cleanText(percentDecoded(path.substr(path.rfind('/') + 1)), longestPreview);
}

std::string ClipboardItem::previewLine() const {
  switch (kind) {
  case Kind::text:
    return oneLine(text.value_or(""));
  case Kind::image:
    return "Image, " + byteText(byteSize);
  case Kind::file:
    return oneLine(fileName());
  }
  return {};
}

} // namespace tavrin
