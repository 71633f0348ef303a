#include "TavrinCore/Text/HTMLReader.h"

#include "TavrinCore/Text/Text.h"

#include <algorithm>

namespace tavrin {
namespace {

constexpr std::size_t mostAttributes = 32;

bool isLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isSpace(char c) {
  return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f';
}

/// Elements whose content is not markup.
bool hasRawContent(std::string_view name) {
  constexpr std::string_view names[] = {"script", "style",   "title",    "textarea",
                                        "iframe", "noembed", "noframes", "xmp"};
  return std::ranges::find(names, name) != std::end(names);
}

bool beginsWithTag(std::string_view text, std::string_view name) {
  const auto isSame = [](char a, char b) { return (isLetter(a) ? a | 0x20 : a) == b; };
  return text.size() > name.size() &&
         std::equal(name.begin(), name.end(), text.begin(),
                    [&](char wanted, char found) { return isSame(found, wanted); }) &&
         !isLetter(text[name.size()]);
}

} // namespace

std::string_view HTMLTag::value(std::string_view attribute) const {
  const auto found =
      std::ranges::find(attributes, attribute, &std::pair<std::string, std::string>::first);
  return found == attributes.end() ? std::string_view() : std::string_view(found->second);
}

bool HTMLReader::skipTo(std::string_view end) {
  const auto found = page_.find(end, at_);
  at_ = found == std::string_view::npos ? page_.size() : found + end.size();
  return found != std::string_view::npos;
}

void HTMLReader::skipSpace() {
  while (at_ < page_.size() && isSpace(page_[at_]))
    ++at_;
}

std::optional<HTMLTag> HTMLReader::next() {
  while (skipTo("<")) {
    const auto rest = page_.substr(at_);
    if (rest.starts_with("!--")) {
      // "<!-->" is a whole comment.
      at_ += 1;
      skipTo("-->");
    } else if (rest.starts_with('!') || rest.starts_with('?')) {
      skipTo(">");
    } else if (!rest.empty() &&
               (isLetter(rest[0]) || (rest[0] == '/' && rest.size() > 1 && isLetter(rest[1])))) {
      HTMLTag tag = readTag();
      if (!tag.isEnd && hasRawContent(tag.name)) {
        const auto content = readContent(tag.name);
        if (tag.name == "title")
          tag.content = withoutEntities(content);
      }
      return tag;
    }
  }
  return std::nullopt;
}

std::string HTMLReader::text() {
  const auto start = std::min(at_, page_.size());
  at_ = std::min(page_.find('<', start), page_.size());
  return withoutEntities(page_.substr(start, at_ - start));
}

HTMLTag HTMLReader::readTag() {
  HTMLTag tag;
  tag.isEnd = isAt('/');
  at_ += tag.isEnd ? 1 : 0;
  const auto start = at_;
  while (at_ < page_.size() && !isSpace(page_[at_]) && page_[at_] != '/' && page_[at_] != '>')
    ++at_;
  tag.name = asciiLowered(page_.substr(start, at_ - start));
  while (at_ < page_.size() && !isAt('>')) {
    if (isSpace(page_[at_]) || isAt('/'))
      ++at_;
    else
      readAttribute(tag);
  }
  at_ += at_ < page_.size() ? 1 : 0;
  return tag;
}

void HTMLReader::readAttribute(HTMLTag& tag) {
  const auto start = at_;
  do
    ++at_;
  while (at_ < page_.size() && !isSpace(page_[at_]) && !isAt('/') && !isAt('>') && !isAt('='));
  const auto name = page_.substr(start, at_ - start);
  skipSpace();
  std::string_view value;
  if (isAt('=')) {
    ++at_;
    skipSpace();
    value = readValue();
  }
  if (tag.attributes.size() < mostAttributes)
    tag.attributes.emplace_back(asciiLowered(name), withoutEntities(value));
}

std::string_view HTMLReader::readValue() {
  if (isAt('"') || isAt('\'')) {
    const auto start = at_ + 1;
    const auto end = std::min(page_.find(page_[at_], start), page_.size());
    at_ = std::min(end + 1, page_.size());
    return page_.substr(start, end - start);
  }
  const auto start = at_;
  while (at_ < page_.size() && !isSpace(page_[at_]) && !isAt('>'))
    ++at_;
  return page_.substr(start, at_ - start);
}

std::string_view HTMLReader::readContent(const std::string& name) {
  const auto start = at_;
  const bool mayEnd = std::ranges::find(neverEnded_, name) == neverEnded_.end();
  while (mayEnd) {
    const auto end = page_.find("</", at_);
    if (end == std::string_view::npos)
      break;
    at_ = end + 2;
    if (beginsWithTag(page_.substr(at_), name)) {
      at_ = end;
      return page_.substr(start, end - start);
    }
  }
  if (mayEnd)
    neverEnded_.push_back(name);
  // Never ended: a title is taken for what stands on its line, of the others nothing is left.
  const auto content = page_.substr(start, page_.find_first_of("<\n", start) - start);
  at_ = name == "title" ? start + content.size() : page_.size();
  return content;
}

} // namespace tavrin
