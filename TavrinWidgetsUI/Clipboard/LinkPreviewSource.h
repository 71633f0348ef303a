#pragma once

#include "TavrinCore/Base/Data.h"
#include "TavrinPlatform/Clock.h"
#include "TavrinPlatform/Web/PublicHTTPFetcher.h"

#include <optional>
#include <string>

namespace tavrin {

/// What the page behind a link says of itself.
struct LinkPreview {
  std::optional<std::string> title = {};
  std::optional<std::string> description = {};
  /// A small JPEG or PNG.
  std::optional<Data> image = {};

  bool isEmpty() const { return !title && !description && !image; }
  bool operator==(const LinkPreview&) const = default;
};

/// Fetches previews, one at a time and only from the public Internet. The network is first touched
/// by the first fetch. For the main thread; pages and pictures are read off it.
class LinkPreviewSource {
public:
  /// Seconds for page and picture together.
  static constexpr double timeLimit = 8;
  static constexpr std::size_t longestPage = 512 * 1024;
  static constexpr std::size_t longestImage = 2 * 1024 * 1024;
  /// Pixels of the picture that is kept.
  static constexpr int imageSide = 128;

  struct Services {
    RunLoop& runLoop;
    Clock& clock;
    std::function<HTTPClient&()> http;
  };
  explicit LinkPreviewSource(Services services) : services_(std::move(services)) {}

  /// Calls `done` once with what was found, perhaps nothing; not before this returns, and not at
  /// all once the token has gone. The source outlives its tokens.
  [[nodiscard]] TokenPtr fetch(const std::string& url,
                               std::function<void(const LinkPreview&)> done);

private:
  class Fetch;
  Services services_;
  std::unique_ptr<PublicHTTPFetcher> fetcher_;
};

} // namespace tavrin
