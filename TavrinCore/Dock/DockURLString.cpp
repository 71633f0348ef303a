#include "TavrinCore/Dock/DockURLString.h"

#include "TavrinCore/Base/Text.h"

#include <cctype>
#include <optional>

namespace tavrin {
namespace {

/// What a path may hold unescaped (RFC 3986, section 3.3), less the semicolon.
bool isPlain(char c) {
  constexpr std::string_view marks = "-._~!$&'()*+,=:@/";
  return (static_cast<unsigned char>(c) < 0x80 && std::isalnum(static_cast<unsigned char>(c))) ||
         marks.find(c) != std::string_view::npos;
}

std::optional<int> hexDigit(char c) {
  if (c >= '0' && c <= '9')
    return c - '0';
  const char lower = static_cast<char>(c | 0x20);
  return lower >= 'a' && lower <= 'f' ? std::optional(lower - 'a' + 10) : std::nullopt;
}

/// No value when an escape is no escape, or stands for what no path can hold.
std::optional<std::string> unescaped(std::string_view text) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '%') {
      result += text[i];
      continue;
    }
    const auto high = i + 1 < text.size() ? hexDigit(text[i + 1]) : std::nullopt;
    const auto low = i + 2 < text.size() ? hexDigit(text[i + 2]) : std::nullopt;
    if (!high || !low || *high * 16 + *low == 0)
      return std::nullopt;
    result += static_cast<char>(*high * 16 + *low);
    i += 2;
  }
  return isUTF8(result) ? std::optional(result) : std::nullopt;
}

} // namespace

std::string DockURLString::fileURLString(std::string_view path, bool isDirectory) {
  constexpr char digits[] = "0123456789ABCDEF";
  std::string text = path.starts_with('/') ? "file://" : "file:///";
  for (const char c : path) {
    // A null has no escape that reads back; left as it is, the file's XML form refuses it.
    if (isPlain(c) || c == '\0') {
      text += c;
    } else {
      text += '%';
      text += digits[static_cast<unsigned char>(c) >> 4];
      text += digits[static_cast<unsigned char>(c) & 15];
    }
  }
  if (isDirectory && !text.ends_with('/'))
    text += '/';
  return text;
}

std::string DockURLString::path(std::string_view text) {
  constexpr std::string_view scheme = "file://";
  if (!text.starts_with(scheme))
    return normalize(text);
  auto rest = text.substr(scheme.size());
  rest = rest.substr(0, rest.find_first_of("?#"));
  // Between the scheme and the path stands the host, mostly an empty one.
  const auto slash = rest.find('/');
  const auto path =
      slash == std::string_view::npos ? std::string() : std::string(rest.substr(slash));
  const auto plain = unescaped(path);
  return normalize(plain ? std::string_view(*plain) : text);
}

std::string DockURLString::normalize(std::string_view path) {
  while (path.size() >= 2 && path.ends_with('/'))
    path.remove_suffix(1);
  return std::string(path);
}

} // namespace tavrin
