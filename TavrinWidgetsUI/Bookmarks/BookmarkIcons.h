#pragma once

#include "TavrinCore/Base/Lifetime.h"
#include "TavrinCore/Kinds/Bookmarks/Bookmarks.h"
#include "TavrinPlatform/Clock.h"
#include "TavrinPlatform/Web/PublicHTTPFetcher.h"

#include <QImage>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>

namespace tavrin {

/// The sites' icons: each fetched once, from the site itself, and kept on the disk within a bound.
/// A site without one is asked again after a month. Reading, decoding and writing happen in the
/// background.
class BookmarkIcons {
public:
  /// Pixels.
  static constexpr int side = 48;
  static constexpr std::size_t mostFiles = 300;
  static constexpr double retryAfter = 30 * 86'400.0;

  struct Services {
    RunLoop& runLoop;
    Clock& clock;
    /// Made when the first icon is to be fetched.
    std::function<HTTPClient&()> http;
    std::filesystem::path folder;
  };
  explicit BookmarkIcons(Services services);

  /// The icon where it is there; else null, and `onChange` follows when it comes.
  QImage icon(const std::string& url);
  /// Without, nothing is fetched and nothing shown.
  void setEnabled(bool enabled) { isEnabled_ = enabled; }
  std::function<void()> onChange;

  /// The file of a site's icon, by its origin; empty where the name would be too long.
  static std::string fileName(const WebAddress& address);

private:
  struct Site {
    QImage image;
    /// The answers of its server asked for so far.
    std::size_t asked = 0;
    TokenPtr request;
  };

  void readKept(const std::string& origin, const std::filesystem::path& file);
  void fetch(const std::string& origin);
  void decode(const std::string& origin, std::string bytes);
  void keep(const std::string& origin, const QImage& image);
  void show(const std::string& origin, const QImage& image);

  Services services_;
  std::unique_ptr<PublicHTTPFetcher> fetcher_;
  std::map<std::string, Site> sites_;
  bool isEnabled_ = true;
  Lifetime alive_;
};

} // namespace tavrin
