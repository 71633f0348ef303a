#include "TavrinPlatform/Qt/NetworkWatch.h"

#include <QSocketNotifier>
#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>
#include <unistd.h>

namespace tavrin {
namespace {

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

TokenPtr watchNetwork(std::function<void()> handler) {
  return std::make_unique<AddressWatch>(std::move(handler));
}

} // namespace tavrin
