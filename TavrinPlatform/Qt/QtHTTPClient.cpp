#include "TavrinPlatform/Qt/QtHTTPClient.h"

#include "TavrinPlatform/Qt/NetworkWatch.h"

#include <QHostInfo>
#include <QNetworkProxyFactory>
#include <QNetworkReply>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <cmath>

namespace tavrin {
namespace {

std::chrono::milliseconds milliseconds(double seconds) {
  return std::chrono::milliseconds(std::lround(std::clamp(seconds, 0.001, 3600.0) * 1000));
}

/// Goes to `address` in the name of the host.
void direct(QNetworkRequest& request, const QString& address) {
  QUrl url = request.url();
  const QString host = url.host(QUrl::FullyEncoded);
  const QString shown = host.contains(QLatin1Char(':')) ? '[' + host + ']' : host;
  const QString port = url.port() >= 0 ? ':' + QString::number(url.port()) : QString();
  request.setRawHeader("Host", (shown + port).toLatin1());
  request.setPeerVerifyName(host);
  // Its requests would name the address.
  request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
  url.setHost(address);
  request.setUrl(url);
}

/// A proxy that reads a request in the clear would be sent the address in the name's place, and
/// sent the name it would look for the address itself.
bool isReadByAProxy(const QUrl& url) {
  if (url.scheme() != QLatin1String("http"))
    return false;
  const auto proxies = QNetworkProxyFactory::proxyForQuery(QNetworkProxyQuery(url));
  return !proxies.isEmpty() && (proxies.front().type() == QNetworkProxy::HttpProxy ||
                                proxies.front().type() == QNetworkProxy::HttpCachingProxy);
}

/// One request; ends with its token.
class Exchange final : public Token, public QObject {
public:
  Exchange(QNetworkAccessManager& manager, const HTTPRequest& request,
           std::function<void(const HTTPResponse&)> done)
      : request_(request), done_(std::move(done)) {
    QNetworkRequest wanted(QUrl(QString::fromStdString(request.url), QUrl::StrictMode));
    wanted.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                        answersRedirects() ? QNetworkRequest::ManualRedirectPolicy
                                           : QNetworkRequest::SameOriginRedirectPolicy);
    wanted.setMaximumRedirectsAllowed(4);
    wanted.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    wanted.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    wanted.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    wanted.setHeader(QNetworkRequest::UserAgentHeader, QStringLiteral("Tavrin/1.0"));
    if (!request.address.empty() && isReadByAProxy(wanted.url())) {
      QMetaObject::invokeMethod(
          this, [this] { answer({}); }, Qt::QueuedConnection);
      return;
    }
    if (!request.address.empty())
      direct(wanted, QString::fromStdString(request.address));
    reply_ = manager.get(wanted);
    connect(reply_, &QIODevice::readyRead, this, [this] { read(); });
    connect(reply_, &QNetworkReply::metaDataChanged, this, [this] { checkLength(); });
    connect(
        reply_, &QNetworkReply::finished, this, [this] { finish(); }, Qt::QueuedConnection);
    connect(reply_, &QNetworkReply::requestSent, this, [this] { connecting_.stop(); });
    connecting_.setSingleShot(true);
    connecting_.callOnTimeout(this, [this] { fail(); });
    connecting_.start(milliseconds(request.connectTimeLimit));
    QTimer::singleShot(milliseconds(request.timeLimit), this, [this] { fail(); });
  }
  ~Exchange() override { drop(); }
  Exchange(const Exchange&) = delete;
  Exchange& operator=(const Exchange&) = delete;

private:
  bool answersRedirects() const { return request_.redirects == HTTPRequest::Redirects::none; }
  bool isCutOff() const { return request_.excess == HTTPRequest::Excess::isCutOff; }
  void checkLength() {
    const auto length = reply_->header(QNetworkRequest::ContentLengthHeader);
    if (!isCutOff() && length.isValid() && length.toULongLong() > request_.sizeLimit)
      fail();
  }
  void read() {
    const QByteArray piece = reply_->readAll();
    body_.append(piece.constData(), static_cast<std::size_t>(piece.size()));
    if (body_.size() <= request_.sizeLimit)
      return;
    if (!isCutOff()) {
      fail();
      return;
    }
    body_.resize(request_.sizeLimit);
    HTTPResponse response = told();
    drop();
    QMetaObject::invokeMethod(
        this, [this, response = std::move(response)] { answer(response); }, Qt::QueuedConnection);
  }
  /// What has been read, with its headers.
  HTTPResponse told() {
    return {reply_->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(), std::move(body_),
            reply_->rawHeader("Content-Type").toStdString(),
            reply_->rawHeader("Location").toStdString()};
  }
  void finish() {
    if (reply_ == nullptr)
      return;
    const bool hasAnswer = reply_->attribute(QNetworkRequest::HttpStatusCodeAttribute).isValid();
    const auto error = reply_->error();
    // Everything from 201 on is a whole answer with a bad status; below, there is none.
    const bool isWhole =
        error == QNetworkReply::NoError || error > QNetworkReply::UnknownProxyError;
    if (!hasAnswer || !isWhole) {
      fail();
      return;
    }
    read();
    if (reply_ == nullptr)
      return;
    HTTPResponse response = told();
    if (response.status >= 300 && response.status < 400 && !answersRedirects())
      response = {};
    drop();
    answer(response);
  }
  void fail() {
    if (reply_ == nullptr)
      return;
    drop();
    QMetaObject::invokeMethod(
        this, [this] { answer({}); }, Qt::QueuedConnection);
  }
  void drop() {
    if (reply_ == nullptr)
      return;
    reply_->disconnect(this);
    reply_->abort();
    reply_->deleteLater();
    reply_ = nullptr;
  }
  void answer(const HTTPResponse& response) {
    // The callee may drop this token.
    const auto done = std::exchange(done_, nullptr);
    if (done)
      done(response);
  }

  QNetworkReply* reply_ = nullptr;
  HTTPRequest request_;
  std::function<void(const HTTPResponse&)> done_;
  std::string body_;
  QTimer connecting_;
};

/// A question for a host's addresses; ends with its token.
class Resolution final : public Token, public QObject {
public:
  using Answer = std::function<void(const std::vector<std::string>&)>;
  Resolution(const std::string& host, Answer done) : done_(std::move(done)) {
    const QString name = QString::fromStdString(host);
    // An address would be asked for its name.
    if (const QHostAddress address(name); !address.isNull())
      QMetaObject::invokeMethod(
          this, [this, address] { answer({address}); }, Qt::QueuedConnection);
    else
      lookup_ = QHostInfo::lookupHost(name, this,
                                      [this](const QHostInfo& info) { answer(info.addresses()); });
  }
  ~Resolution() override {
    if (lookup_ >= 0)
      QHostInfo::abortHostLookup(lookup_);
  }
  Resolution(const Resolution&) = delete;
  Resolution& operator=(const Resolution&) = delete;

private:
  void answer(const QList<QHostAddress>& addresses) {
    lookup_ = -1;
    std::vector<std::string> texts;
    for (const auto& address : addresses)
      texts.push_back(address.toString().toStdString());
    // The callee may drop this token.
    const auto done = std::exchange(done_, nullptr);
    done(texts);
  }

  Answer done_;
  int lookup_ = -1;
};

} // namespace

QtHTTPClient::QtHTTPClient() {
  QNetworkProxyFactory::setUseSystemConfiguration(true);
  manager_.setAutoDeleteReplies(false);
}

TokenPtr QtHTTPClient::get(const HTTPRequest& request,
                           std::function<void(const HTTPResponse&)> done) {
  return std::make_unique<Exchange>(manager_, request, std::move(done));
}

TokenPtr QtHTTPClient::resolve(const std::string& host, Resolution::Answer done) {
  return std::make_unique<Resolution>(host, std::move(done));
}

TokenPtr QtHTTPClient::observeNetwork(std::function<void()> handler) {
  return watchNetwork(std::move(handler));
}

} // namespace tavrin

extern "C" __attribute__((visibility("default"))) tavrin::HTTPClient* tavrinMakeHTTPClient() {
  return new tavrin::QtHTTPClient;
}
