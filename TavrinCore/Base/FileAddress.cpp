#include "TavrinCore/Base/FileAddress.h"

namespace tavrin {
namespace {

constexpr std::size_t longestAddress = 8192;
constexpr std::string_view scheme = "file://";

int hexDigit(char c) {
  if (c >= '0' && c <= '9')
    return c - '0';
  if (c >= 'a' && c <= 'f')
    return c - 'a' + 10;
  return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

} // namespace

std::string percentDecoded(std::string_view text) {
  std::string decoded;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const int high = text[i] == '%' && i + 2 < text.size() ? hexDigit(text[i + 1]) : -1;
    const int low = high >= 0 ? hexDigit(text[i + 2]) : -1;
    if (low >= 0) {
      decoded.push_back(static_cast<char>(high * 16 + low));
      i += 2;
    } else {
      decoded.push_back(text[i]);
    }
  }
  return decoded;
}

std::optional<std::filesystem::path> localFile(std::string_view url) {
  constexpr std::string_view own = "localhost/";
  if (!url.starts_with(scheme) || url.size() > longestAddress)
    return std::nullopt;
  url.remove_prefix(scheme.size());
  if (url.starts_with(own))
    url.remove_prefix(own.size() - 1);
  if (!url.starts_with('/'))
    return std::nullopt;
  std::string path = percentDecoded(url);
  if (path.find('\0') != std::string::npos)
    return std::nullopt;
  return path;
}

} // namespace tavrin
