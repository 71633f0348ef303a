#pragma once

#include "TavrinPlatform/HTTPClient.h"

#include <QNetworkAccessManager>

namespace tavrin {

/// Qt Network. The answers are read by its own thread.
class QtHTTPClient final : public HTTPClient {
public:
  QtHTTPClient();

  [[nodiscard]] TokenPtr get(const HTTPRequest& request,
                             std::function<void(const HTTPResponse&)> done) override;
  [[nodiscard]] TokenPtr
  resolve(const std::string& host,
          std::function<void(const std::vector<std::string>&)> done) override;
  [[nodiscard]] TokenPtr observeNetwork(std::function<void()> handler) override;

private:
  QNetworkAccessManager manager_;
};

} // namespace tavrin
