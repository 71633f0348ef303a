#include "TavrinCore/Kinds/Bookmarks/Bookmarks.h"

#include "TavrinCore/Text/FoldedWords.h"
#include "TavrinCore/Text/Text.h"

#include <algorithm>

namespace tavrin {
namespace {

constexpr std::size_t longestAddress = 2048;

char lower(char character) {
  return character >= 'A' && character <= 'Z' ? static_cast<char>(character + 32) : character;
}

std::string lowered(std::string_view text) {
  std::string result(text);
  std::ranges::transform(result, result.begin(), lower);
  return result;
}

/// What no address has inside.
bool isForbidden(char character) {
  const auto byte = static_cast<unsigned char>(character);
  return byte <= 0x20 || byte == 0x7F || character == '"' || character == '<' || character == '>' ||
         character == '\\' || character == '`';
}

bool isHost(std::string_view host) {
  return !host.empty() && host.size() <= 253 && host.front() != '.' && host.front() != '-' &&
         host.find("..") == host.npos && host.find_first_of("%{}|^") == host.npos;
}

bool isPort(std::string_view digits) {
  return !digits.empty() && digits.size() <= 5 &&
         digits.find_first_not_of("0123456789") == digits.npos;
}

} // namespace

std::optional<WebAddress> WebAddress::from(std::string_view text) {
  text = trimmed(text);
  if (text.empty() || text.size() > longestAddress || !isUTF8(text) ||
      std::ranges::any_of(text, isForbidden))
    return std::nullopt;
  WebAddress address;
  const auto colon = text.find("://");
  std::string_view rest = text;
  if (colon == text.npos) {
    address.url = "https://" + std::string(text);
  } else {
    const std::string scheme = lowered(text.substr(0, colon));
    if (scheme != "http" && scheme != "https")
      return std::nullopt;
    address.isSecure = scheme == "https";
    rest = text.substr(colon + 3);
    address.url = scheme + "://" + std::string(rest);
  }
  std::string_view authority = rest.substr(0, rest.find_first_of("/?#"));
  // A name and a password in front make an address say another host than it leads to.
  if (authority.find('@') != authority.npos)
    return std::nullopt;
  const bool isBracketed = authority.starts_with('[');
  const auto portAt = isBracketed ? authority.find(':', authority.find(']')) : authority.find(':');
  if (portAt != authority.npos) {
    if (!isPort(authority.substr(portAt + 1)))
      return std::nullopt;
    address.port = authority.substr(portAt);
    authority = authority.substr(0, portAt);
  }
  address.host = lowered(authority);
  const bool isTypedWord = colon == text.npos && address.host.find('.') == address.host.npos;
  if (isTypedWord || (!isBracketed && !isHost(address.host)))
    return std::nullopt;
  return address;
}

std::string WebAddress::origin() const {
  return (isSecure ? "https://" : "http://") + host + port;
}

std::string WebAddress::site() const {
  return host.starts_with("www.") && host.size() > 4 ? host.substr(4) : host;
}

std::string displayTitle(const Bookmark& bookmark) {
  if (const auto title = trimmed(bookmark.title); !title.empty())
    return std::string(title);
  const auto address = WebAddress::from(bookmark.url);
  return address ? address->site() : bookmark.url;
}

const Bookmark* bookmarkAt(const BookmarkSettings& settings, const BookmarkPlace& place) {
  if (place.folder && *place.folder >= settings.folders.size())
    return nullptr;
  const auto& list = place.folder ? settings.folders[*place.folder].bookmarks : settings.bookmarks;
  return place.index < list.size() ? &list[place.index] : nullptr;
}

std::vector<BookmarkPlace> bookmarksIn(const BookmarkSettings& settings,
                                       std::optional<std::size_t> folder) {
  std::vector<BookmarkPlace> places;
  for (BookmarkPlace place{folder, 0}; bookmarkAt(settings, place) != nullptr; ++place.index)
    places.push_back(place);
  return places;
}

std::vector<BookmarkPlace> allBookmarks(const BookmarkSettings& settings) {
  auto places = bookmarksIn(settings, std::nullopt);
  for (std::size_t folder = 0; folder < settings.folders.size(); ++folder) {
    const auto some = bookmarksIn(settings, folder);
    places.insert(places.end(), some.begin(), some.end());
  }
  return places;
}

std::vector<BookmarkPlace> findBookmarks(const BookmarkSettings& settings, std::string_view query) {
  const std::string whole = foldedWords(query.substr(0, 200));
  const auto words = wordsOf(whole);
  std::vector<BookmarkPlace> first;
  std::vector<BookmarkPlace> others;
  if (words.empty())
    return first;
  for (const auto& place : allBookmarks(settings)) {
    const Bookmark& bookmark = *bookmarkAt(settings, place);
    const std::string title = foldedWords(displayTitle(bookmark));
    std::string searched = title + ' ' + foldedWords(bookmark.url.substr(0, longestAddress));
    if (place.folder)
      searched += ' ' + foldedWords(settings.folders[*place.folder].title);
    if (std::ranges::all_of(words,
                            [&](const auto& word) { return searched.find(word) != searched.npos; }))
      (title.starts_with(whole) ? first : others).push_back(place);
  }
  first.insert(first.end(), others.begin(), others.end());
  return first;
}

bool addBookmark(BookmarkSettings& settings, std::string_view text,
                 std::optional<std::size_t> folder) {
  const auto address = WebAddress::from(text);
  const auto places = allBookmarks(settings);
  if (!address || places.size() >= mostBookmarks || (folder && *folder >= settings.folders.size()))
    return false;
  const bool isThere = std::ranges::any_of(places, [&](const BookmarkPlace& place) {
    const auto other = WebAddress::from(bookmarkAt(settings, place)->url);
    return other && other->url == address->url;
  });
  if (isThere)
    return false;
  (folder ? settings.folders[*folder].bookmarks : settings.bookmarks).push_back({"", address->url});
  return true;
}

void removeBookmark(BookmarkSettings& settings, const BookmarkPlace& place) {
  if (bookmarkAt(settings, place) == nullptr)
    return;
  auto& list = place.folder ? settings.folders[*place.folder].bookmarks : settings.bookmarks;
  list.erase(list.begin() + static_cast<std::ptrdiff_t>(place.index));
}

} // namespace tavrin
