#pragma once

#include "TavrinPlatform/RunLoop.h"

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace tavrin {

struct HTTPRequest {
  /// Absolute, http or https.
  std::string url;
  /// Seconds for the whole answer.
  double timeLimit = 20;
  /// Bytes of the answer, unpacked.
  std::size_t sizeLimit = 1024 * 1024;
  /// What a longer answer does.
  enum class Excess { fails, isCutOff };
  Excess excess = Excess::fails;
  /// Seconds until the request is on its way: connecting and its encryption.
  double connectTimeLimit = 20;
  /// Connects to this address, and asks no one for the host's. The name in `url` still goes into
  /// the request and must be the server's in its certificate. Through a proxy that reads requests
  /// this cannot be had, and there is no answer.
  std::string address = {};
  /// Redirects within one host are followed, or each is answered as it comes.
  enum class Redirects { withinHost, none };
  Redirects redirects = Redirects::withinHost;
};

struct HTTPResponse {
  /// 0 when there was no whole answer: no network, too slow, too long, or a redirect to another
  /// host, which is refused.
  int status = 0;
  std::string body;
  /// The headers of these names, as sent.
  std::string contentType = {};
  std::string location = {};

  bool isSuccess() const { return status >= 200 && status < 300; }
};

/// Plain requests to web services: no cookies, no stored passwords. Nothing waits on the main
/// thread.
class HTTPClient {
public:
  virtual ~HTTPClient() = default;
  /// Calls `done` once on the main thread, not before this returns, unless the token goes first;
  /// then the request is ended.
  [[nodiscard]] virtual TokenPtr get(const HTTPRequest& request,
                                     std::function<void(const HTTPResponse&)> done) = 0;
  /// The addresses of a host, in the order to try them; none when it is not known. As `get`.
  [[nodiscard]] virtual TokenPtr
  resolve(const std::string& host, std::function<void(const std::vector<std::string>&)> done) = 0;
  /// Calls `handler` when the network may have come back: the computer got an address. Also when
  /// it got a further one.
  [[nodiscard]] virtual TokenPtr observeNetwork(std::function<void()> handler) = 0;
};

} // namespace tavrin
