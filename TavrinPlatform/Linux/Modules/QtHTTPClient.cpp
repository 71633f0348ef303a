#include "TavrinPlatform/Linux/Modules/QtHTTPClient.h"

#include <QNetworkProxyFactory>
#include <QNetworkReply>
#include <QSocketNotifier>
#include <QTimer>
#include <algorithm>
#include <cmath>
#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>
#include <unistd.h>

namespace tavrin {
namespace {

/// One request; ends with its token.
class Exchange final : public Token, public QObject {
public:
  Exchange(QNetworkAccessManager& manager, const HTTPRequest& request,
           std::function<void(const HTTPResponse&)> done)
      : limit_(request.sizeLimit), done_(std::move(done)) {
    QNetworkRequest wanted(QUrl(QString::fromStdString(request.url), QUrl::StrictMode));
    wanted.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                        QNetworkRequest::SameOriginRedirectPolicy);
    wanted.setMaximumRedirectsAllowed(4);
    wanted.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    wanted.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    wanted.setHeader(QNetworkRequest::UserAgentHeader, QStringLiteral("Tavrin/1.0"));
    reply_ = manager.get(wanted);
    connect(reply_, &QIODevice::readyRead, this, [this] { read(); });
    connect(reply_, &QNetworkReply::metaDataChanged, this, [this] { checkLength(); });
    connect(
        reply_, &QNetworkReply::finished, this, [this] { finish(); }, Qt::QueuedConnection);
    const double seconds = std::clamp(request.timeLimit, 0.001, 3600.0);
    QTimer::singleShot(static_cast<int>(std::lround(seconds * 1000)), this, [this] { fail(); });
  }
  ~Exchange() override { drop(); }
  Exchange(const Exchange&) = delete;
  Exchange& operator=(const Exchange&) = delete;

private:
  void checkLength() {
    const auto length = reply_->header(QNetworkRequest::ContentLengthHeader);
    if (length.isValid() && length.toULongLong() > limit_)
      fail();
  }
  void read() {
    const QByteArray piece = reply_->readAll();
    body_.append(piece.constData(), static_cast<std::size_t>(piece.size()));
    if (body_.size() > limit_)
      fail();
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
    HTTPResponse response{reply_->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(),
                          std::move(body_)};
    if (response.status >= 300 && response.status < 400)
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
  std::size_t limit_;
  std::function<void(const HTTPResponse&)> done_;
  std::string body_;
};

/// The kernel tells of each address that an interface gets.
class AddressWatch final : public Token, public QObject {
public:
  explicit AddressWatch(std::function<void()> handler) : handler_(std::move(handler)) {
    socket_ = ::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC | SOCK_NONBLOCK, NETLINK_ROUTE);
    sockaddr_nl address{};
    address.nl_family = AF_NETLINK;
    address.nl_groups = RTMGRP_IPV4_IFADDR | RTMGRP_IPV6_IFADDR;
    if (socket_ < 0 ||
        ::bind(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
      return;
    notifier_ = std::make_unique<QSocketNotifier>(socket_, QSocketNotifier::Read);
    connect(notifier_.get(), &QSocketNotifier::activated, this, [this] { read(); });
  }
  ~AddressWatch() override {
    notifier_.reset();
    if (socket_ >= 0)
      ::close(socket_);
  }
  AddressWatch(const AddressWatch&) = delete;
  AddressWatch& operator=(const AddressWatch&) = delete;

private:
  void read() {
    bool hasNew = false;
    alignas(nlmsghdr) char buffer[8192];
    ssize_t count = 0;
    while ((count = ::recv(socket_, buffer, sizeof buffer, 0)) > 0) {
      auto left = static_cast<unsigned>(count);
      for (auto* message = reinterpret_cast<nlmsghdr*>(buffer); NLMSG_OK(message, left);
           message = NLMSG_NEXT(message, left))
        hasNew = hasNew || message->nlmsg_type == RTM_NEWADDR;
    }
    // The callee may drop this token.
    if (const auto handler = handler_; hasNew)
      handler();
  }

  int socket_ = -1;
  std::unique_ptr<QSocketNotifier> notifier_;
  std::function<void()> handler_;
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

TokenPtr QtHTTPClient::observeNetwork(std::function<void()> handler) {
  return std::make_unique<AddressWatch>(std::move(handler));
}

} // namespace tavrin

extern "C" __attribute__((visibility("default"))) tavrin::HTTPClient* tavrinMakeHTTPClient() {
  return new tavrin::QtHTTPClient;
}
