#pragma once

#include "TavrinCore/Base/Lifetime.h"
#include "TavrinPlatform/Web/PublicHTTPFetcher.h"

#include <functional>
#include <map>
#include <memory>
#include <string>

namespace tavrin {

/// What the pages of links call themselves. Each is asked once, as a stranger's page is: only on
/// the public Internet, within bounds of time and length, and read off the main thread.
class BookmarkNames {
public:
  /// Bytes; a page's name stands at its beginning.
  static constexpr std::size_t longestPage = 256 * 1024;

  /// `http` is made when the first page is asked.
  BookmarkNames(RunLoop& runLoop, std::function<HTTPClient&()> http)
      : runLoop_(runLoop), http_(std::move(http)) {}

  void fetch(const std::string& url);
  /// A page has told its name. Pages that tell none are not heard of.
  std::function<void(const std::string& url, const std::string& name)> onName;

private:
  void take(const std::string& url, const PublicHTTPResponse& response);

  RunLoop& runLoop_;
  std::function<HTTPClient&()> http_;
  std::unique_ptr<PublicHTTPFetcher> fetcher_;
  std::map<std::string, TokenPtr> requests_;
  Lifetime alive_;
};

} // namespace tavrin
