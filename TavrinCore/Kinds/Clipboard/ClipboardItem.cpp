#include "TavrinCore/Kinds/Clipboard/ClipboardItem.h"

#include "TavrinCore/Base/Wipe.h"
#include "TavrinCore/Text/CodePoints.h"
#include "TavrinCore/Text/DecimalText.h"
#include "TavrinCore/Text/Text.h"
#include "TavrinCore/Text/Texts.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>
#include <unicode/uchar.h>

namespace tavrin {
namespace {

constexpr std::size_t longestPreview = 200;

/// The scheme's rest: host, port and path. Empty where it is no web address.
std::string_view afterScheme(std::string_view url) {
  for (const std::string_view scheme : {"https://", "http://"})
    if (asciiLowered(url.substr(0, scheme.size())) == scheme)
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
  return asciiLowered(rest.substr(0, rest.find(':')));
}

} // namespace

std::string byteText(std::int64_t bytes) {
  constexpr std::array<const char*, 4> units{"KB", "MB", "GB", "TB"};
  if (bytes < 1000)
    return fmt::format("{} B", bytes);
  double amount = static_cast<double>(bytes) / 1000;
  std::size_t unit = 0;
  for (; amount >= 999.5 && unit + 1 < units.size(); ++unit)
    amount /= 1000;
  return decimalText(amount, amount < 9.95 ? 1 : 0) + " " + units[unit];
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
  const SecretText decoded(percentDecoded(path.substr(path.rfind('/') + 1)));
  return cleanText(decoded.text(), longestPreview);
}

std::string ClipboardItem::linkHost() const {
  if (!text || !looksLikeURL(*text))
    return {};
  std::string host = hostOf(trimmed(*text));
  return host.starts_with("www.") ? host.substr(4) : host;
}

std::string ClipboardItem::previewLine() const {
  switch (kind) {
  case Kind::text:
    return oneLine(text.value_or(""), longestPreview);
  case Kind::image:
    return translated("Image, {size}", {{"size", byteText(byteSize)}});
  case Kind::file:
    return oneLine(fileName(), longestPreview);
  }
  return {};
}

} // namespace tavrin
