#include "TavrinCore/Kinds/Bookmarks/BookmarkFiles.h"
#include "TavrinCore/Kinds/Bookmarks/Bookmarks.h"
#include "TavrinCore/Text/Text.h"

#include <cstdint>
#include <cstdlib>

using namespace tavrin;

/// Whatever a file holds: what is read of it are addresses of the web under plain titles, and what
/// is written of them is read again as they were.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::string_view file(reinterpret_cast<const char*>(bytes), size);
  const auto read = readBookmarks(file);
  if (!read)
    return 0;
  std::size_t count = 0;
  for (const auto& place : allBookmarks(read->found)) {
    const Bookmark& bookmark = *bookmarkAt(read->found, place);
    const auto address = WebAddress::from(bookmark.url);
    if (!address || address->url != bookmark.url || !isUTF8(bookmark.title) ||
        !isUTF8(address->site()))
      std::abort();
    ++count;
  }
  if (count + read->refused > mostImported)
    std::abort();
  BookmarkSettings settings;
  const auto merge = mergeBookmarks(settings, read->found);
  if (merge.added + merge.known + merge.left != count ||
      allBookmarks(settings).size() > mostBookmarks)
    std::abort();
  const auto again = readBookmarks(bookmarksPage(settings, "Links"));
  if (!again || again->refused != 0 ||
      allBookmarks(again->found).size() != allBookmarks(settings).size())
    std::abort();
  return 0;
}
