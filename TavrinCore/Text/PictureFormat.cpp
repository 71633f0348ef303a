#include "TavrinCore/Text/PictureFormat.h"

#include <array>

namespace tavrin {
namespace {

using namespace std::string_view_literals;

struct Signature {
  std::string_view format;
  std::string_view beginning;
};

constexpr auto signatures = std::to_array<Signature>({{"png", "\x89PNG\r\n\x1A\n"sv},
                                                      {"jpeg", "\xFF\xD8\xFF"sv},
                                                      {"gif", "GIF87a"sv},
                                                      {"gif", "GIF89a"sv},
                                                      {"bmp", "BM"sv},
                                                      {"tiff", "II*\0"sv},
                                                      {"tiff", "MM\0*"sv},
                                                      {"ppm", "P3"sv},
                                                      {"ppm", "P6"sv},
                                                      {"ico", "\0\0\1\0"sv},
                                                      {"xpm", "/* XPM */"sv}});

} // namespace

std::string_view pictureFormat(std::string_view bytes) {
  for (const auto& [format, beginning] : signatures)
    if (bytes.starts_with(beginning))
      return format;
  constexpr std::size_t kindAt = 8;
  if (bytes.starts_with("RIFF") && bytes.size() > kindAt &&
      bytes.substr(kindAt).starts_with("WEBP"))
    return "webp";
  return {};
}

} // namespace tavrin
