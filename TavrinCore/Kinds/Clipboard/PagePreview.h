#pragma once

#include <string>
#include <string_view>

namespace tavrin {

/// What a web page says of itself for others to show.
struct PagePreview {
  static constexpr std::size_t longestTitle = 300;
  static constexpr std::size_t longestDescription = 1000;

  /// One line each, in UTF-8; empty where the page says nothing.
  std::string title = {};
  std::string description = {};
  /// The picture's address as written, which may be relative to `base`; the site's icon where the
  /// page names no picture.
  std::string image = {};
  /// The address that relative ones start from, itself perhaps relative to the page's own; empty
  /// for that.
  std::string base = {};

  bool operator==(const PagePreview&) const = default;
};

/// Reads a page as lenient as need be; `contentType` as its server sent it, perhaps empty. In the
/// character set of its byte order mark, else of the content type, else as the page itself says,
/// else in UTF-8 where it is that, else in windows-1252. What Open Graph says goes before the
/// Twitter card, and that before the page's own title and description.
PagePreview readPagePreview(std::string_view page, std::string_view contentType);

} // namespace tavrin
