#include "TavrinWidgetsUI/Bookmarks/BookmarkIcons.h"

#include "TavrinPlatform/Files/AtomicFile.h"
#include "TavrinWidgetsUI/Bookmarks/Favicon.h"

#include <QBuffer>
#include <algorithm>
#include <array>
#include <vector>

namespace tavrin {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t largestIcon = 256 * 1024;
constexpr std::size_t largestKept = 64 * 1024;
constexpr std::size_t longestName = 120;
/// Memory for the icons of a few hundred sites would be more than all the rest of a slot.
constexpr std::size_t mostInMemory = 96;
/// Where sites have had their icons since there are any.
constexpr std::array paths{"/favicon.ico", "/apple-touch-icon.png"};

std::string pngOf(const QImage& image) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  image.save(&buffer, "PNG");
  return bytes.toStdString();
}

/// Removes the files touched longest ago, until `most` are left.
void trim(const fs::path& folder, std::size_t most) {
  std::error_code error;
  std::vector<std::pair<fs::file_time_type, fs::path>> files;
  for (const auto& entry : fs::directory_iterator(folder, error))
    if (entry.is_regular_file(error))
      files.emplace_back(entry.last_write_time(error), entry.path());
  if (files.size() <= most)
    return;
  std::ranges::sort(files);
  for (std::size_t i = 0; i + most < files.size(); ++i)
    fs::remove(files[i].second, error);
}

/// What was kept of a site: an icon, or that it has none.
struct Kept {
  bool isThere = false;
  QImage image;
};

Kept readFileOf(const fs::path& file, double now) {
  Kept kept;
  try {
    const auto bytes = readFile(file, largestKept);
    if (!bytes)
      return kept;
    kept.image = faviconFrom(*bytes, BookmarkIcons::side);
    const double age = now - static_cast<double>(fileStamp(file).modifiedNanoseconds) / 1e9;
    kept.isThere = !kept.image.isNull() || (bytes->empty() && age < BookmarkIcons::retryAfter);
  } catch (const FileError&) {
    // It is fetched anew.
  }
  return kept;
}

} // namespace

BookmarkIcons::BookmarkIcons(Services services) : services_(std::move(services)) {}

std::string BookmarkIcons::fileName(const WebAddress& address) {
  std::string name = address.isSecure ? "" : "http_";
  for (const char character : address.host + address.port) {
    const bool isPlain = (character >= 'a' && character <= 'z') ||
                         (character >= '0' && character <= '9') || character == '.' ||
                         character == '-';
    constexpr std::string_view hex = "0123456789abcdef";
    const auto byte = static_cast<unsigned char>(character);
    if (isPlain)
      name += character;
    else
      (name += '_').append({hex[byte >> 4], hex[byte & 15]});
  }
  return name.size() > longestName ? "" : name + ".png";
}

QImage BookmarkIcons::icon(const std::string& url) {
  if (!isEnabled_)
    return {};
  const auto address = WebAddress::from(url);
  if (!address)
    return {};
  const std::string origin = address->origin();
  if (const auto found = sites_.find(origin); found != sites_.end())
    return found->second.image;
  const std::string name = fileName(*address);
  if (name.empty() || sites_.size() >= mostInMemory)
    return {};
  sites_.emplace(origin, Site{});
  readKept(origin, services_.folder / name);
  return {};
}

void BookmarkIcons::readKept(const std::string& origin, const fs::path& file) {
  const auto kept = std::make_shared<Kept>();
  const double now = services_.clock.now().unixSeconds();
  services_.runLoop.background([kept, file, now] { *kept = readFileOf(file, now); }, alive_,
                               [this, origin, kept] {
                                 if (!kept->isThere)
                                   fetch(origin);
                                 else if (!kept->image.isNull())
                                   show(origin, kept->image);
                               });
}

void BookmarkIcons::fetch(const std::string& origin) {
  Site& site = sites_[origin];
  if (!isEnabled_)
    return;
  if (site.asked >= paths.size()) {
    keep(origin, {});
    return;
  }
  if (!fetcher_)
    fetcher_ = std::make_unique<PublicHTTPFetcher>(services_.http(), services_.runLoop);
  PublicHTTPRequest request;
  request.url = origin + paths[site.asked++];
  request.sizeLimit = largestIcon;
  site.request = fetcher_->get(request, [this, origin](const PublicHTTPResponse& response) {
    // Not of this call's own token: what it ends must outlive it.
    const auto ended = std::move(sites_[origin].request);
    if (response.isSuccess())
      decode(origin, response.body);
    else if (response.status != 0)
      fetch(origin);
    // Without any answer there may be no network: the next start asks again.
  });
}

void BookmarkIcons::decode(const std::string& origin, std::string bytes) {
  const auto image = std::make_shared<QImage>();
  services_.runLoop.background(
      [image, bytes = std::move(bytes)] { *image = faviconFrom(bytes, side); }, alive_,
      [this, origin, image] {
        if (image->isNull()) {
          fetch(origin);
          return;
        }
        keep(origin, *image);
        show(origin, *image);
      });
}

void BookmarkIcons::keep(const std::string& origin, const QImage& image) {
  const auto address = WebAddress::from(origin);
  if (!address)
    return;
  services_.runLoop.background(
      [folder = services_.folder, name = fileName(*address), image] {
        try {
          fs::create_directories(folder);
          writeFileAtomically(folder / name, image.isNull() ? std::string() : pngOf(image),
                              FileAccess::ownerOnly);
          trim(folder, mostFiles);
        } catch (const std::exception&) {
          // Only the next start is slower.
        }
      },
      alive_, [] {});
}

void BookmarkIcons::show(const std::string& origin, const QImage& image) {
  sites_[origin].image = image;
  if (onChange)
    onChange();
}

} // namespace tavrin
