#include "TavrinWidgetsUI/Bookmarks/BookmarkNames.h"

#include "TavrinCore/Kinds/Clipboard/PagePreview.h"
#include "TavrinCore/Text/Text.h"

namespace tavrin {

void BookmarkNames::fetch(const std::string& url) {
  if (!fetcher_)
    fetcher_ = std::make_unique<PublicHTTPFetcher>(http_(), runLoop_);
  requests_[url] = fetcher_->get({url, longestPage, HTTPRequest::Excess::isCutOff},
                                 [this, url](const auto& response) { take(url, response); });
}

void BookmarkNames::take(const std::string& url, const PublicHTTPResponse& response) {
  const auto request = requests_.extract(url);
  const std::string type = asciiLowered(trimmed(response.contentType));
  const bool isPage =
      type.empty() || type.starts_with("text/html") || type.starts_with("application/xhtml+xml");
  if (!response.isSuccess() || !isPage)
    return;
  const auto name = std::make_shared<std::string>();
  runLoop_.background(
      [name, response] { *name = readPagePreview(response.body, response.contentType).title; },
      alive_,
      [this, url, name] {
        if (!name->empty() && onName)
          onName(url, *name);
      });
}

} // namespace tavrin
