#include "TavrinPlatform/Web/PublicHTTPFetcher.h"

#include "TavrinCore/Base/PublicAddress.h"

#include <QUrl>
#include <algorithm>
#include <deque>

namespace tavrin {
namespace {

constexpr int httpPort = 80;
constexpr int httpsPort = 443;
/// Below it stand the services of every other kind, which a request could be made to talk to.
constexpr int firstUnprivilegedPort = 1024;

bool isWebPort(int port) {
  return port == httpPort || port == httpsPort || port >= firstUnprivilegedPort;
}

} // namespace

/// The first of the fetches runs.
struct PublicHTTPFetcher::Queue {
  HTTPClient& http;
  RunLoop& runLoop;
  std::deque<Fetch*> fetches = {};
  TokenPtr turn = nullptr;

  void add(Fetch* fetch);
  void remove(Fetch* fetch);
  void startFirst();
};

class PublicHTTPFetcher::Fetch final : public Token {
public:
  Fetch(const std::shared_ptr<Queue>& queue, PublicHTTPRequest request,
        std::function<void(const PublicHTTPResponse&)> done)
      : queue_(queue), request_(std::move(request)), done_(std::move(done)) {
    queue->add(this);
  }
  ~Fetch() override { leave(); }
  Fetch(const Fetch&) = delete;
  Fetch& operator=(const Fetch&) = delete;

  void start();
  /// Ends what runs; the queue is going.
  void stop() {
    step_.reset();
    limit_.reset();
  }

private:
  void visit(const QUrl& url);
  void connectTo(const std::vector<std::string>& addresses);
  void tryNextAddress();
  void answered(const HTTPResponse& response);
  void finish(const PublicHTTPResponse& response = {});
  void leave();

  std::weak_ptr<Queue> queue_;
  PublicHTTPRequest request_;
  std::function<void(const PublicHTTPResponse&)> done_;
  QUrl url_;
  std::vector<std::string> addresses_;
  int redirects_ = 0;
  /// The look-up or the request under way.
  TokenPtr step_;
  TokenPtr limit_;
};

void PublicHTTPFetcher::Queue::add(Fetch* fetch) {
  fetches.push_back(fetch);
  if (fetches.size() == 1)
    startFirst();
}

void PublicHTTPFetcher::Queue::remove(Fetch* fetch) {
  const auto found = std::ranges::find(fetches, fetch);
  if (found == fetches.end())
    return;
  const bool isRunning = found == fetches.begin();
  fetches.erase(found);
  if (isRunning)
    startFirst();
}

void PublicHTTPFetcher::Queue::startFirst() {
  turn =
      fetches.empty() ? nullptr : runLoop.after(0, [first = fetches.front()] { first->start(); });
}

void PublicHTTPFetcher::Fetch::start() {
  limit_ = queue_.lock()->runLoop.after(request_.timeLimit, [this] { finish(); });
  visit(QUrl(QString::fromStdString(request_.url), QUrl::StrictMode));
}

void PublicHTTPFetcher::Fetch::visit(const QUrl& url) {
  const QString host = url.host(QUrl::FullyEncoded);
  const bool isWeb =
      url.scheme() == QLatin1String("https") || url.scheme() == QLatin1String("http");
  if (!url.isValid() || !isWeb || !isWebPort(url.port(httpPort)) || host.isEmpty() ||
      !url.userInfo().isEmpty()) {
    finish();
    return;
  }
  url_ = url.adjusted(QUrl::RemoveFragment);
  step_ = queue_.lock()->http.resolve(host.toStdString(),
                                      [this](const auto& addresses) { connectTo(addresses); });
}

void PublicHTTPFetcher::Fetch::connectTo(const std::vector<std::string>& addresses) {
  if (addresses.empty() || !std::ranges::all_of(addresses, isPublicAddress)) {
    finish();
    return;
  }
  // A second one for hosts of which half cannot be reached from here; the first is tried first.
  constexpr std::size_t mostAddresses = 2;
  addresses_.assign(addresses.begin(), addresses.begin() + static_cast<std::ptrdiff_t>(std::min(
                                                               addresses.size(), mostAddresses)));
  tryNextAddress();
}

void PublicHTTPFetcher::Fetch::tryNextAddress() {
  HTTPRequest request;
  request.url = url_.toString(QUrl::FullyEncoded).toStdString();
  request.timeLimit = request_.timeLimit;
  request.connectTimeLimit = connectTimeLimit;
  request.sizeLimit = request_.sizeLimit;
  request.excess = request_.excess;
  request.redirects = HTTPRequest::Redirects::none;
  request.address = addresses_.front();
  addresses_.erase(addresses_.begin());
  step_ = queue_.lock()->http.get(request, [this](const auto& response) { answered(response); });
}

void PublicHTTPFetcher::Fetch::answered(const HTTPResponse& response) {
  constexpr int redirects[] = {301, 302, 303, 307, 308};
  if (response.status == 0 && !addresses_.empty()) {
    tryNextAddress();
  } else if (std::ranges::find(redirects, response.status) != std::end(redirects)) {
    if (response.location.empty() || ++redirects_ > longestRedirects)
      finish();
    else
      visit(url_.resolved(QUrl(QString::fromStdString(response.location))));
  } else if (response.status == 0) {
    finish();
  } else {
    finish({response.status, response.body, response.contentType,
            url_.toString(QUrl::FullyEncoded).toStdString()});
  }
}

void PublicHTTPFetcher::Fetch::finish(const PublicHTTPResponse& response) {
  const auto done = std::exchange(done_, nullptr);
  leave();
  // The callee may drop this token.
  if (done)
    done(response);
}

void PublicHTTPFetcher::Fetch::leave() {
  stop();
  if (const auto queue = queue_.lock())
    queue->remove(this);
}

PublicHTTPFetcher::PublicHTTPFetcher(HTTPClient& http, RunLoop& runLoop)
    : queue_(std::make_shared<Queue>(Queue{http, runLoop})) {}

PublicHTTPFetcher::~PublicHTTPFetcher() {
  for (auto* fetch : queue_->fetches)
    fetch->stop();
}

TokenPtr PublicHTTPFetcher::get(const PublicHTTPRequest& request,
                                std::function<void(const PublicHTTPResponse&)> done) {
  return std::make_unique<Fetch>(queue_, request, std::move(done));
}

} // namespace tavrin
