#include "TavrinCore/Dock/DockURLString.h"

#include "TavrinCore/Base/FileURL.h"
#include "TavrinCore/Text/Text.h"

namespace tavrin {

std::string DockURLString::fileURLString(std::string_view path, bool isDirectory) {
  std::string text = fileURL(path);
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
  const auto plain = unescapedPath(path);
  return normalize(plain && isUTF8(*plain) ? std::string_view(*plain) : text);
}

std::string DockURLString::normalize(std::string_view path) {
  while (path.size() >= 2 && path.ends_with('/'))
    path.remove_suffix(1);
  return std::string(path);
}

} // namespace tavrin
