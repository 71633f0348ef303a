#include "TavrinCore/Text/CharacterSet.h"

#include "TavrinCore/Text/Text.h"

#include <algorithm>
#include <array>
#include <memory>
#include <unicode/ucnv.h>

namespace tavrin {
namespace {

/// Names that pages use for a larger set than the name says.
constexpr auto pageNames =
    std::to_array<std::pair<std::string_view, const char*>>({{"ascii", "windows-1252"},
                                                             {"us-ascii", "windows-1252"},
                                                             {"ansi_x3.4-1968", "windows-1252"},
                                                             {"latin1", "windows-1252"},
                                                             {"l1", "windows-1252"},
                                                             {"iso-8859-1", "windows-1252"},
                                                             {"iso8859-1", "windows-1252"},
                                                             {"iso_8859-1", "windows-1252"},
                                                             {"cp1252", "windows-1252"},
                                                             {"x-cp1252", "windows-1252"},
                                                             {"iso-8859-9", "windows-1254"},
                                                             {"latin5", "windows-1254"},
                                                             {"tis-620", "windows-874"},
                                                             {"iso-8859-11", "windows-874"},
                                                             {"gb2312", "gb18030"},
                                                             {"gbk", "gb18030"},
                                                             {"x-gbk", "gb18030"},
                                                             {"euc-kr", "windows-949"},
                                                             {"ks_c_5601-1987", "windows-949"},
                                                             {"x-sjis", "shift_jis"}});

bool isName(std::string_view name) {
  constexpr std::size_t longestName = 40;
  return !name.empty() && name.size() <= longestName && std::ranges::all_of(name, [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-' || c == '_' || c == ':' ||
           c == '.' || c == '+';
  });
}

struct CloseConverter {
  void operator()(UConverter* converter) const { ucnv_close(converter); }
};

} // namespace

std::string_view characterSetIn(std::string_view contentType) {
  constexpr std::string_view key = "charset";
  const std::string lowered = asciiLowered(contentType);
  auto at = lowered.find(key);
  if (at == std::string::npos)
    return {};
  auto rest = trimmed(contentType.substr(at + key.size()));
  if (!rest.starts_with('='))
    return {};
  rest = trimmed(rest.substr(1));
  if (rest.starts_with('"') || rest.starts_with('\''))
    return rest.substr(1, rest.find(rest.front(), 1) - 1);
  return rest.substr(0, rest.find_first_of("; \t\r\n,\"'"));
}

std::optional<std::string> textFrom(std::string_view bytes, std::string_view characterSet) {
  std::string name = asciiLowered(trimmed(characterSet));
  if (!isName(name))
    return std::nullopt;
  if (name == "utf-8" || name == "utf8")
    return cleanText(bytes, bytes.size());
  if (const auto* known =
          std::ranges::find(pageNames, name, &std::pair<std::string_view, const char*>::first);
      known != pageNames.end())
    name = known->second;
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<UConverter, CloseConverter> converter(ucnv_open(name.c_str(), &status));
  if (U_FAILURE(status))
    return std::nullopt;
  const auto length = static_cast<std::int32_t>(bytes.size());
  std::string text(bytes.size() * 2 + 64, '\0');
  for (int attempt = 0; attempt < 2; ++attempt) {
    status = U_ZERO_ERROR;
    const auto size =
        ucnv_toAlgorithmic(UCNV_UTF8, converter.get(), text.data(),
                           static_cast<std::int32_t>(text.size()), bytes.data(), length, &status);
    text.resize(static_cast<std::size_t>(std::max(size, 0)));
    if (U_SUCCESS(status))
      return text;
    if (status != U_BUFFER_OVERFLOW_ERROR)
      break;
  }
  return std::nullopt;
}

char32_t windowsCharacter(unsigned char byte) {
  constexpr std::array<char16_t, 32> middle{
      0x20AC, 0x81,   0x201A, 0x192,  0x201E, 0x2026, 0x2020, 0x2021, 0x2C6,  0x2030, 0x160,
      0x2039, 0x152,  0x8D,   0x17D,  0x8F,   0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
      0x2013, 0x2014, 0x2DC,  0x2122, 0x161,  0x203A, 0x153,  0x9D,   0x17E,  0x178};
  return byte >= 0x80 && byte < 0xA0 ? middle[byte - 0x80U] : byte;
}

} // namespace tavrin
