#include "TavrinPlatform/Linux/Pasteboard/CapturePlan.h"

#include "TavrinPlatform/Linux/Pasteboard/Latin1.h"

#include <algorithm>
#include <array>

namespace tavrin {

namespace {

constexpr std::size_t longestHint = 256;
constexpr std::size_t longestFiles = 256 * 1024;
constexpr const char* latin1Target = "STRING";
/// What the hint says of a copy that is to be forgotten.
constexpr std::string_view secretHint = "secret";

} // namespace

void CapturePlan::begin(std::int64_t changeCount, std::string copyName,
                        const Pasteboard::Limits& limits) {
  capture_ = {};
  capture_.changeCount = changeCount;
  capture_.copyName = std::move(copyName);
  limits_ = limits;
  wishes_.clear();
}

void CapturePlan::offered(std::vector<std::string> types, bool isDoubtful) {
  capture_.types = std::move(types);
  // A hint that is refused, or that does not come, hints all the same; and so may a list that
  // cannot be read to its end.
  if (offers(passwordHint) || isDoubtful)
    capture_.types.emplace_back(Pasteboard::transientType);
  choose();
}

bool CapturePlan::offers(std::string_view type) const {
  return std::ranges::find(capture_.types, type) != capture_.types.end();
}

void CapturePlan::choose() {
  if (offers(passwordHint))
    wishes_.push_back({passwordHint, passwordHint});
  for (const char* type : {Pasteboard::filesType, Pasteboard::tiffType, Pasteboard::pngType})
    if (offers(type))
      wishes_.push_back({type, type});
  constexpr std::array<const char*, 4> texts{"UTF8_STRING", "text/plain;charset=utf-8",
                                             "text/plain", latin1Target};
  const auto text = std::ranges::find_if(texts, [this](auto type) { return offers(type); });
  if (text != texts.end())
    wishes_.push_back({Pasteboard::textType, *text});
  else if (capture_.types.empty()) // an owner too simple to tell what it has
    wishes_.push_back({Pasteboard::textType, "UTF8_STRING"});
}

std::size_t CapturePlan::bound(const Wish& wish) const {
  if (wish.type == passwordHint)
    return longestHint;
  if (wish.type == Pasteboard::filesType)
    return longestFiles;
  return wish.isImage() ? limits_.imageBytes : limits_.textBytes;
}

void CapturePlan::arrived(std::string bytes, std::size_t size) {
  const Wish wish = std::move(wishes_.front());
  wishes_.pop_front();
  if (size == 0)
    return;
  if (wish.target == latin1Target) {
    bytes = utf8FromSTRING(bytes, size > bound(wish));
    size = std::max(size, bytes.size());
  }
  if (wish.type == passwordHint && size <= bound(wish) &&
      bytes.find(secretHint) == std::string::npos)
    capture_.types.pop_back(); // what the offer had it taken for
  // Text beside the file or the image it names would be read in vain.
  if (wish.isImage() ||
      (wish.type == Pasteboard::filesType && bytes.find("file:") != std::string::npos))
    wishes_.clear();
  Pasteboard::Format format{wish.type, nullptr, size};
  // Half an image is none; the beginning of a text is one.
  if (!wish.isImage() || size <= bound(wish))
    format.data = std::make_shared<const Data>(Data::fromText(bytes));
  capture_.formats.push_back(std::move(format));
}

Pasteboard::Capture CapturePlan::finish() {
  wishes_.clear();
  return std::move(capture_);
}

} // namespace tavrin
