#include "TavrinCore/Kinds/Clipboard/PagePreview.h"

#include "TavrinCore/Text/CharacterSet.h"
#include "TavrinCore/Text/HTMLReader.h"
#include "TavrinCore/Text/Text.h"

#include <algorithm>
#include <array>

namespace tavrin {
namespace {

constexpr std::size_t longestAddress = 2048;
/// Where a page must have named its character set.
constexpr std::size_t longestPrologue = 4096;

enum class Part { title, description, image };

struct Source {
  std::string_view name;
  Part part;
  /// The lowest that says something counts.
  int rank;
};
constexpr int pageTitleRank = 3;
constexpr int pictureLinkRank = 3;
constexpr int largeIconRank = 4;
constexpr int iconRank = 5;
constexpr int noRank = 100;
constexpr auto sources = std::to_array<Source>({{"og:title", Part::title, 0},
                                                {"twitter:title", Part::title, 1},
                                                {"title", Part::title, 2},
                                                {"og:site_name", Part::title, 4},
                                                {"application-name", Part::title, 5},
                                                {"og:description", Part::description, 0},
                                                {"twitter:description", Part::description, 1},
                                                {"description", Part::description, 2},
                                                {"og:image:secure_url", Part::image, 0},
                                                {"og:image:url", Part::image, 1},
                                                {"og:image", Part::image, 1},
                                                {"twitter:image", Part::image, 2},
                                                {"twitter:image:src", Part::image, 2}});

class PageReading {
public:
  void take(const HTMLTag& tag);
  PagePreview preview;

private:
  void offer(Part part, int rank, std::string_view text);
  void takeMeta(const HTMLTag& tag);
  void takeLink(const HTMLTag& tag);

  std::array<int, 3> ranks_{noRank, noRank, noRank};
  bool isInDrawing_ = false;
};

void PageReading::offer(Part part, int rank, std::string_view text) {
  int& known = ranks_[static_cast<std::size_t>(part)];
  if (rank >= known)
    return;
  constexpr std::size_t lengths[] = {PagePreview::longestTitle, PagePreview::longestDescription,
                                     longestAddress};
  std::string line = oneLine(text, lengths[static_cast<std::size_t>(part)]);
  const bool isCutAddress = part == Part::image && line.size() != trimmed(text).size();
  if (line.empty() || isCutAddress)
    return;
  known = rank;
  (part == Part::title         ? preview.title
   : part == Part::description ? preview.description
                               : preview.image) = std::move(line);
}

void PageReading::takeMeta(const HTMLTag& tag) {
  for (const char* attribute : {"property", "name"}) {
    const std::string name = asciiLowered(trimmed(tag.value(attribute)));
    if (const auto* source = std::ranges::find(sources, name, &Source::name);
        source != sources.end())
      offer(source->part, source->rank, tag.value("content"));
  }
}

void PageReading::takeLink(const HTMLTag& tag) {
  const std::string kind = ' ' + asciiLowered(tag.value("rel")) + ' ';
  const auto is = [&](std::string_view wanted) { return kind.find(wanted) != std::string::npos; };
  if (is(" image_src "))
    offer(Part::image, pictureLinkRank, tag.value("href"));
  else if (is(" apple-touch-icon ") || is(" apple-touch-icon-precomposed "))
    offer(Part::image, largeIconRank, tag.value("href"));
  else if (is(" icon "))
    offer(Part::image, iconRank, tag.value("href"));
}

void PageReading::take(const HTMLTag& tag) {
  if (tag.name == "svg")
    isInDrawing_ = !tag.isEnd;
  if (tag.isEnd)
    return;
  if (tag.name == "title" && !isInDrawing_)
    offer(Part::title, pageTitleRank, tag.content);
  else if (tag.name == "meta")
    takeMeta(tag);
  else if (tag.name == "link")
    takeLink(tag);
  else if (tag.name == "base" && preview.base.empty() && tag.value("href").size() <= longestAddress)
    preview.base = oneLine(tag.value("href"), longestAddress);
}

/// The character set that the page itself names.
std::string namedCharacterSet(std::string_view page) {
  HTMLReader reader(page.substr(0, longestPrologue));
  while (const auto tag = reader.next()) {
    if (tag->name == "body")
      break;
    if (tag->name != "meta" || tag->isEnd)
      continue;
    std::string name = asciiLowered(trimmed(tag->value("charset")));
    if (name.empty() && asciiLowered(trimmed(tag->value("http-equiv"))) == "content-type")
      name = asciiLowered(trimmed(characterSetIn(tag->value("content"))));
    // It could not have been read as such.
    if (name.starts_with("utf-16") || name.starts_with("utf-32"))
      return "utf-8";
    if (!name.empty())
      return name;
  }
  return {};
}

/// Whether the page is UTF-8, but for a last character that was cut off with the rest.
bool isCutUTF8(std::string_view page) {
  for (std::size_t cut = 0; cut < 4 && cut <= page.size(); ++cut)
    if (isUTF8(page.substr(0, page.size() - cut)))
      return true;
  return false;
}

std::string textOf(std::string_view page, std::string_view contentType) {
  constexpr auto marks = std::to_array<std::pair<std::string_view, std::string_view>>(
      {{"\xEF\xBB\xBF", "utf-8"}, {"\xFE\xFF", "utf-16be"}, {"\xFF\xFE", "utf-16le"}});
  for (const auto& [mark, name] : marks)
    if (page.starts_with(mark))
      return textFrom(page.substr(mark.size()), name).value_or("");
  for (const auto& name : {std::string(characterSetIn(contentType)), namedCharacterSet(page)})
    if (auto text = textFrom(page, name))
      return *std::move(text);
  return textFrom(page, isCutUTF8(page) ? "utf-8" : "windows-1252").value_or("");
}

} // namespace

PagePreview readPagePreview(std::string_view page, std::string_view contentType) {
  const std::string text = textOf(page, contentType);
  HTMLReader reader(text);
  PageReading reading;
  while (const auto tag = reader.next())
    reading.take(*tag);
  return std::move(reading.preview);
}

} // namespace tavrin
