#include "TavrinWidgetsUI/Clipboard/LinkPreviewSource.h"

#include "TavrinCore/Base/Lifetime.h"
#include "TavrinCore/Kinds/Clipboard/PagePreview.h"
#include "TavrinCore/Text/Text.h"
#include "TavrinWidgetsUI/Kit/Pictures/Thumbnail.h"

#include <QUrl>
#include <algorithm>

namespace tavrin {
namespace {

bool isKind(const PublicHTTPResponse& response, std::string_view kind) {
  return asciiLowered(trimmed(response.contentType)).starts_with(kind);
}

/// Where the page's picture is, seen from where the page came from.
std::string imageURL(const PagePreview& page, const std::string& pageURL) {
  const auto url = [](const std::string& text) { return QUrl(QString::fromStdString(text)); };
  const QUrl base = url(pageURL).resolved(url(page.base));
  return page.image.empty()
             ? std::string()
             : base.resolved(url(page.image)).toString(QUrl::FullyEncoded).toStdString();
}

std::optional<std::string> unlessEmpty(std::string text) {
  return text.empty() ? std::nullopt : std::optional(std::move(text));
}

} // namespace

class LinkPreviewSource::Fetch final : public Token {
public:
  Fetch(LinkPreviewSource& source, const std::string& url,
        std::function<void(const LinkPreview&)> done)
      : services_(source.services_), fetcher_(*source.fetcher_), done_(std::move(done)),
        started_(services_.clock.now()) {
    step_ = fetcher_.get({url, longestPage, HTTPRequest::Excess::isCutOff, timeLimit},
                         [this](const auto& response) { takePage(response); });
  }

private:
  void takePage(const PublicHTTPResponse& response);
  void fetchImage(const std::string& url);
  void takeImage(const PublicHTTPResponse& response);
  void finish();

  const Services& services_;
  PublicHTTPFetcher& fetcher_;
  std::function<void(const LinkPreview&)> done_;
  Date started_;
  LinkPreview preview_;
  TokenPtr step_;
  Lifetime alive_;
};

void LinkPreviewSource::Fetch::takePage(const PublicHTTPResponse& response) {
  if (response.isSuccess() && isKind(response, "image/")) {
    fetchImage(response.url);
    return;
  }
  const bool isPage = response.contentType.empty() || isKind(response, "text/html") ||
                      isKind(response, "application/xhtml+xml");
  if (!response.isSuccess() || !isPage) {
    finish();
    return;
  }
  const auto page = std::make_shared<PagePreview>();
  services_.runLoop.background(
      [page, response] { *page = readPagePreview(response.body, response.contentType); }, alive_,
      [this, page, url = response.url] {
        preview_.title = unlessEmpty(page->title);
        preview_.description = unlessEmpty(page->description);
        fetchImage(imageURL(*page, url));
      });
}

void LinkPreviewSource::Fetch::fetchImage(const std::string& url) {
  const double left = timeLimit - std::max(0.0, services_.clock.now().since(started_));
  if (url.empty() || left <= 0) {
    finish();
    return;
  }
  step_ = fetcher_.get({url, longestImage, HTTPRequest::Excess::fails, left},
                       [this](const auto& response) { takeImage(response); });
}

void LinkPreviewSource::Fetch::takeImage(const PublicHTTPResponse& response) {
  if (!response.isSuccess()) {
    finish();
    return;
  }
  const auto image = std::make_shared<std::optional<Data>>();
  services_.runLoop.background(
      [image, body = response.body] { *image = packedThumbnail(body, imageSide); }, alive_,
      [this, image] {
        preview_.image = std::move(*image);
        finish();
      });
}

void LinkPreviewSource::Fetch::finish() {
  // The callee may drop this token.
  const auto done = std::exchange(done_, nullptr);
  const LinkPreview preview = std::move(preview_);
  done(preview);
}

TokenPtr LinkPreviewSource::fetch(const std::string& url,
                                  std::function<void(const LinkPreview&)> done) {
  if (!fetcher_)
    fetcher_ = std::make_unique<PublicHTTPFetcher>(services_.http(), services_.runLoop);
  return std::make_unique<Fetch>(*this, url, std::move(done));
}

} // namespace tavrin
