#include "TavrinPlatform/Qt/NetworkWatch.h"

#include <QNetworkInformation>

namespace tavrin {
namespace {

class ReachabilityWatch final : public Token, public QObject {
public:
  explicit ReachabilityWatch(std::function<void()> handler) : handler_(std::move(handler)) {
    if (!QNetworkInformation::loadDefaultBackend())
      return;
    connect(QNetworkInformation::instance(), &QNetworkInformation::reachabilityChanged, this,
            [this](QNetworkInformation::Reachability reachability) { changed(reachability); });
  }

private:
  void changed(QNetworkInformation::Reachability reachability) {
    if (reachability == QNetworkInformation::Reachability::Disconnected)
      return;
    // The callee may drop this token.
    const auto handler = handler_;
    handler();
  }

  std::function<void()> handler_;
};

} // namespace

TokenPtr watchNetwork(std::function<void()> handler) {
  return std::make_unique<ReachabilityWatch>(std::move(handler));
}

} // namespace tavrin
