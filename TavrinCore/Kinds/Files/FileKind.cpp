#include "TavrinCore/Kinds/Files/FileKind.h"

#include "TavrinCore/Kinds/Clipboard/ClipboardItem.h"

#include "TavrinCore/Text/Text.h"

#include <algorithm>
#include <array>

namespace tavrin {
namespace {

/// Endings between spaces.
struct KindEndings {
  FileKind kind;
  std::string_view endings;
};

constexpr auto kinds = std::to_array<KindEndings>({
    {FileKind::picture, " png jpg jpeg gif webp bmp tif tiff heic heif avif jxl svg ico xcf psd "
                        "raw cr2 nef arw dng kra "},
    {FileKind::video, " mp4 mkv webm mov avi m4v mpg mpeg wmv ogv 3gp flv "},
    {FileKind::audio, " mp3 flac ogg oga opus m4a wav aac aiff wma mid midi "},
    {FileKind::document, " pdf doc docx odt rtf epub mobi djvu ps tex pages "},
    {FileKind::sheet, " xls xlsx ods csv tsv numbers "},
    {FileKind::slides, " ppt pptx odp key "},
    {FileKind::text, " txt md log nfo rst srt vtt org "},
    {FileKind::code, " c h cpp hpp cc py js ts rs go java kt swift rb php sh pl lua sql html htm "
                     "css xml json yaml yml toml ini conf patch diff "},
    {FileKind::archive, " zip tar gz tgz bz2 xz zst 7z rar lz4 lzma cab "},
    {FileKind::program, " deb rpm appimage flatpakref flatpak snap run iso img exe msi dmg apk jar "
                        "bin "},
});

constexpr std::string_view partial =
    " part crdownload download opdownload partial aria2 filepart !ut !qb ";

/// In lower case, without the dot.
std::string endingOf(std::string_view name) {
  const auto dot = name.rfind('.');
  if (dot == std::string_view::npos || dot == 0 || name.size() - dot > 12)
    return {};
  std::string ending(name.substr(dot + 1));
  std::ranges::transform(ending, ending.begin(), [](char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  });
  return ending;
}

bool isIn(std::string_view list, const std::string& ending) {
  return !ending.empty() && ending.find(' ') == std::string::npos &&
         list.find(" " + ending + " ") != std::string_view::npos;
}

} // namespace

FileKind fileKind(std::string_view name) {
  const std::string ending = endingOf(name);
  const auto found =
      std::ranges::find_if(kinds, [&](const auto& each) { return isIn(each.endings, ending); });
  return found == kinds.end() ? FileKind::other : found->kind;
}

std::string fileEnding(std::string_view name, std::size_t longest) {
  std::string ending = endingOf(name);
  const auto isWord = [](char c) { return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9'); };
  if (ending.size() > longest || !std::ranges::all_of(ending, isWord))
    return {};
  std::ranges::transform(ending, ending.begin(),
                         [](char c) { return c >= 'a' ? static_cast<char>(c - 'a' + 'A') : c; });
  return ending;
}

bool isPartialDownload(std::string_view name) {
  return isIn(partial, endingOf(name));
}

bool isHiddenName(std::string_view name) {
  return name.empty() || name.front() == '.' || name.back() == '~';
}

std::string shownName(const std::filesystem::path& path) {
  constexpr std::size_t longest = 255;
  std::string name = path.filename().native();
  if (name.empty())
    name = path.native();
  std::ranges::replace_if(
      name, [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }, ' ');
  return cleanText(name, longest);
}

std::string shownFolder(const std::filesystem::path& folder, const std::filesystem::path& home) {
  constexpr std::size_t longest = 1024;
  std::string text = folder.native();
  const std::string& start = home.native();
  if (!start.empty() && text.starts_with(start) &&
      (text.size() == start.size() || text[start.size()] == '/')) {
    text.erase(0, start.size());
    text.insert(text.begin(), '~');
  }
  std::ranges::replace_if(
      text, [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }, ' ');
  return cleanText(text, longest);
}

std::optional<std::string> textPreview(std::string_view beginning, bool isCut) {
  constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
  constexpr std::size_t longestRest = 3;
  if (beginning.starts_with(byteOrderMark))
    beginning.remove_prefix(byteOrderMark.size());
  for (std::size_t i = 0; isCut && i < longestRest && !isUTF8(beginning); ++i)
    beginning.remove_suffix(beginning.empty() ? 0 : 1);
  const auto isNoText = [](char c) {
    return static_cast<unsigned char>(c) < 0x20 && c != '\n' && c != '\t' && c != '\r' &&
           c != '\f' && c != '\x1B';
  };
  if (!isUTF8(beginning) || std::ranges::any_of(beginning, isNoText))
    return std::nullopt;
  return std::string(beginning);
}

} // namespace tavrin
