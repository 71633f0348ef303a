#include "TavrinCore/Kinds/Bookmarks/BookmarkFiles.h"

#include "TavrinCore/Base/JSONValue.h"
#include "TavrinCore/Kinds/Bookmarks/Bookmarks.h"
#include "TavrinCore/Text/CharacterSet.h"
#include "TavrinCore/Text/HTMLReader.h"
#include "TavrinCore/Text/Text.h"

#include <algorithm>
#include <set>
#include <vector>

namespace tavrin {
namespace {

constexpr std::size_t deepest = 64;
constexpr std::size_t mostFolders = 1000;

/// The folders one is inside of, the outermost first; a browser's own have no title.
class Reading {
public:
  void enter(std::string_view title, bool isBrowsersOwn) {
    path_.push_back(isBrowsersOwn ? std::string() : oneLine(title, longestBookmarkTitle));
  }
  void leave() {
    if (!path_.empty())
      path_.pop_back();
  }
  std::size_t depth() const { return path_.size(); }
  bool isFull() const { return count_ >= mostImported; }

  void add(std::string_view title, std::string_view url) {
    if (isFull())
      return;
    ++count_;
    const auto address = WebAddress::from(url);
    if (!address) {
      ++result.refused;
      return;
    }
    folder().push_back({oneLine(title, longestBookmarkTitle), address->url});
  }

  BookmarkImport result;

private:
  std::vector<Bookmark>& folder() {
    std::string title;
    for (const auto& part : path_)
      if (!part.empty())
        title += (title.empty() ? "" : " / ") + part;
    auto& folders = result.found.folders;
    const auto known = std::ranges::find(folders, title, &BookmarkFolder::title);
    if (title.empty())
      return result.found.bookmarks;
    if (known != folders.end())
      return known->bookmarks;
    if (folders.size() >= mostFolders)
      return result.found.bookmarks;
    folders.push_back({cleanText(title, longestBookmarkTitle), {}});
    return folders.back().bookmarks;
  }

  std::vector<std::string> path_;
  std::size_t count_ = 0;
};

std::string_view textOf(const JSONValue& value, std::string_view key) {
  const auto* member = value.member(key);
  const auto* text = member != nullptr ? member->string() : nullptr;
  return text != nullptr ? std::string_view(*text) : std::string_view();
}

const JSONValue::Array* childrenOf(const JSONValue& value) {
  const auto* member = value.member("children");
  return member != nullptr ? member->array() : nullptr;
}

/// How a browser names the parts of an entry.
struct Dialect {
  std::string_view title;
  std::string_view address;
};
constexpr Dialect chromium{"name", "url"};
constexpr Dialect firefox{"title", "uri"};

void readEntries(const JSONValue::Array& entries, const Dialect& dialect, Reading& reading) {
  for (const auto& entry : entries) {
    if (const auto* children = childrenOf(entry)) {
      if (reading.depth() >= deepest || reading.isFull())
        continue;
      // Firefox marks its own folders with the name of their root.
      const bool isOwn = entry.member("root") != nullptr;
      reading.enter(textOf(entry, dialect.title), isOwn);
      readEntries(*children, dialect, reading);
      reading.leave();
    } else if (const auto url = textOf(entry, dialect.address); !url.empty()) {
      reading.add(textOf(entry, dialect.title), url);
    }
  }
}

std::optional<BookmarkImport> readJSON(std::string_view file) {
  Reading reading;
  try {
    const auto json = JSONValue::parse(file);
    const auto* roots = json.member("roots");
    if (roots != nullptr && roots->object() != nullptr) {
      // The bar's come first.
      for (const char* key : {"bookmark_bar", "other", "synced"})
        if (const auto* root = roots->member(key))
          if (const auto* children = childrenOf(*root))
            readEntries(*children, chromium, reading);
      return std::move(reading.result);
    }
    const auto* children = childrenOf(json);
    if (children == nullptr || !textOf(json, "type").starts_with("text/x-moz-place"))
      return std::nullopt;
    readEntries(*children, firefox, reading);
    return std::move(reading.result);
  } catch (const JSONError&) {
    return std::nullopt;
  }
}

bool isOwnFolder(const HTMLTag& tag) {
  return !tag.value("personal_toolbar_folder").empty() ||
         !tag.value("unfiled_bookmarks_folder").empty();
}

std::optional<BookmarkImport> readPage(std::string_view page) {
  Reading reading;
  HTMLReader reader(page);
  bool isBookmarkFile = false;
  // The list after a folder's title is that folder's.
  std::string title;
  bool isOwn = true;
  while (const auto tag = reader.next()) {
    if (tag->name == "dl") {
      isBookmarkFile = true;
      if (tag->isEnd) {
        reading.leave();
      } else {
        if (reading.depth() >= deepest)
          break;
        reading.enter(title, isOwn);
        title.clear();
        isOwn = true;
      }
    } else if (tag->name == "h3" && !tag->isEnd) {
      isOwn = isOwnFolder(*tag);
      title = reader.text();
    } else if (tag->name == "a" && !tag->isEnd && isBookmarkFile) {
      reading.add(reader.text(), tag->value("href"));
    }
  }
  return isBookmarkFile ? std::optional(std::move(reading.result)) : std::nullopt;
}

std::string escaped(std::string_view text) {
  std::string result;
  for (const char character : text) {
    switch (character) {
    case '&':
      result += "&amp;";
      break;
    case '<':
      result += "&lt;";
      break;
    case '>':
      result += "&gt;";
      break;
    case '"':
      result += "&quot;";
      break;
    default:
      result += character;
    }
  }
  return result;
}

std::string links(const std::vector<Bookmark>& bookmarks, std::string_view indent) {
  std::string lines;
  for (const auto& bookmark : bookmarks)
    lines += std::string(indent) + "<DT><A HREF=\"" + escaped(bookmark.url) + "\">" +
             escaped(displayTitle(bookmark)) + "</A>\n";
  return lines;
}

} // namespace

std::optional<BookmarkImport> readBookmarks(std::string_view file) {
  constexpr std::string_view mark = "\xEF\xBB\xBF";
  if (file.starts_with(mark))
    file.remove_prefix(mark.size());
  const auto start = file.find_first_not_of(" \t\r\n");
  if (start == file.npos)
    return std::nullopt;
  if (file[start] == '{')
    return readJSON(file);
  if (isUTF8(file))
    return readPage(file);
  const auto text = textFrom(file, "windows-1252");
  return text ? readPage(*text) : std::nullopt;
}

BookmarkMerge mergeBookmarks(BookmarkSettings& settings, const BookmarkSettings& found) {
  BookmarkMerge merge;
  std::set<std::string> known;
  const auto places = allBookmarks(settings);
  for (const auto& place : places)
    if (const auto address = WebAddress::from(bookmarkAt(settings, place)->url))
      known.insert(address->key());
  std::size_t count = places.size();
  const auto isNew = [&](const Bookmark& bookmark) {
    const auto address = WebAddress::from(bookmark.url);
    if (!address || !known.insert(address->key()).second) {
      ++merge.known;
      return false;
    }
    if (count >= mostBookmarks) {
      ++merge.left;
      return false;
    }
    ++count;
    ++merge.added;
    return true;
  };
  for (const auto& bookmark : found.bookmarks)
    if (isNew(bookmark))
      settings.bookmarks.push_back(bookmark);
  for (const auto& folder : found.folders)
    for (const auto& bookmark : folder.bookmarks) {
      if (!isNew(bookmark))
        continue;
      auto mine = std::ranges::find(settings.folders, folder.title, &BookmarkFolder::title);
      if (mine == settings.folders.end())
        mine = settings.folders.insert(mine, {folder.title, {}});
      mine->bookmarks.push_back(bookmark);
    }
  return merge;
}

std::string bookmarksPage(const BookmarkSettings& settings, std::string_view title) {
  std::string page = "<!DOCTYPE NETSCAPE-Bookmark-file-1>\n"
                     "<META HTTP-EQUIV=\"Content-Type\" CONTENT=\"text/html; charset=UTF-8\">\n"
                     "<TITLE>" +
                     escaped(title) + "</TITLE>\n<H1>" + escaped(title) + "</H1>\n<DL><p>\n" +
                     links(settings.bookmarks, "    ");
  for (const auto& folder : settings.folders)
    page += "    <DT><H3>" + escaped(folder.title) + "</H3>\n    <DL><p>\n" +
            links(folder.bookmarks, "        ") + "    </DL><p>\n";
  return page + "</DL><p>\n";
}

} // namespace tavrin
