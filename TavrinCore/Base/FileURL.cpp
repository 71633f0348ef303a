#include "TavrinCore/Base/FileURL.h"

#include "TavrinCore/Text/Numbers.h"
#include "TavrinCore/Text/Text.h"

#include <cctype>

namespace tavrin {
namespace {

constexpr std::string_view scheme = "file:";

/// What a path may hold unescaped (RFC 3986, section 3.3), less the semicolon.
bool isPlain(char c) {
  constexpr std::string_view marks = "-._~!$&'()*+,=:@/";
  return (static_cast<unsigned char>(c) < 0x80 && std::isalnum(static_cast<unsigned char>(c))) ||
         marks.find(c) != std::string_view::npos;
}

} // namespace

std::string fileURL(std::string_view path) {
  constexpr char digits[] = "0123456789ABCDEF";
  std::string text = path.starts_with('/') ? "file://" : "file:///";
  for (const char c : path) {
    // A null, which no path holds, has no escape that reads back.
    if (isPlain(c) || c == '\0') {
      text += c;
    } else {
      text += '%';
      text += digits[static_cast<unsigned char>(c) >> 4];
      text += digits[static_cast<unsigned char>(c) & 15];
    }
  }
  return text;
}

std::optional<std::string> unescapedPath(std::string_view text) {
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
  return result;
}

std::optional<std::string> pathOfFileURL(std::string_view url) {
  if (!url.starts_with(scheme))
    return std::nullopt;
  auto rest = url.substr(scheme.size());
  if (rest.starts_with("//")) {
    rest.remove_prefix(2);
    const auto host = rest.substr(0, rest.find('/'));
    if (!host.empty() && host != "localhost")
      return std::nullopt;
    rest.remove_prefix(host.size());
  }
  rest = rest.substr(0, rest.find_first_of("?#"));
  if (!rest.starts_with('/') || rest.find('\0') != std::string_view::npos)
    return std::nullopt;
  return unescapedPath(rest);
}

std::vector<std::filesystem::path> pathsOfURIList(std::string_view list) {
  std::vector<std::filesystem::path> paths;
  while (!list.empty()) {
    const auto end = list.find('\n');
    if (const auto path = pathOfFileURL(trimmed(list.substr(0, end))))
      paths.emplace_back(*path);
    list.remove_prefix(end == std::string_view::npos ? list.size() : end + 1);
  }
  return paths;
}

std::string pathText(const std::filesystem::path& path) {
  return isUTF8(path.native()) ? path.native() : fileURL(path.native());
}

std::optional<std::filesystem::path> pathOfText(std::string_view text,
                                                const std::filesystem::path& home) {
  if (text.starts_with('/'))
    return text.find('\0') == std::string_view::npos ? std::optional(std::filesystem::path(text))
                                                     : std::nullopt;
  if (!home.empty() && (text == "~" || text.starts_with("~/")))
    return pathOfText(home.native() + std::string(text.substr(1)));
  if (const auto path = pathOfFileURL(text))
    return std::filesystem::path(*path);
  return std::nullopt;
}

} // namespace tavrin
