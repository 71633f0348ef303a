#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tavrin {

/// A start or end tag of a page.
struct HTMLTag {
  /// In lower case, as the attributes' names are.
  std::string name;
  bool isEnd = false;
  std::vector<std::pair<std::string, std::string>> attributes = {};
  /// What stands between <title> and its end; empty for other tags.
  std::string content = {};

  /// The attribute's value; empty without one.
  std::string_view value(std::string_view attribute) const;
};

/// Reads the tags of a page one after another, and passes over comments, scripts and styles. Takes
/// any bytes: what is no tag is text. The page must outlive it. Its time grows with the page's
/// length alone.
class HTMLReader {
public:
  explicit HTMLReader(std::string_view page) : page_(page) {}

  /// No value at the end.
  std::optional<HTMLTag> next();
  /// The words from the tag that was read last to the next one.
  std::string text();

private:
  bool skipTo(std::string_view end);
  void skipSpace();
  bool isAt(char c) const { return at_ < page_.size() && page_[at_] == c; }
  HTMLTag readTag();
  void readAttribute(HTMLTag& tag);
  std::string_view readValue();
  std::string_view readContent(const std::string& name);

  std::string_view page_;
  std::size_t at_ = 0;
  /// Elements whose end is known not to come any more.
  std::vector<std::string> neverEnded_;
};

/// `text` (UTF-8) with "&amp;", "&#233;" and the like as what they stand for.
std::string withoutEntities(std::string_view text);

} // namespace tavrin
