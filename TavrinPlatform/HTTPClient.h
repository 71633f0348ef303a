#pragma once

#include "TavrinPlatform/RunLoop.h"

#include <cstddef>
#include <functional>
#include <string>

namespace tavrin {

struct HTTPRequest {
  /// Absolute, http or https.
  std::string url;
  /// Seconds for the whole answer.
  double timeLimit = 20;
  /// Bytes of the answer, unpacked; a longer one fails.
  std::size_t sizeLimit = 1024 * 1024;
};

struct HTTPResponse {
  /// 0 when there was no whole answer: no network, too slow, too long, or a redirect to another
  /// host, which is refused.
  int status = 0;
  std::string body;

  bool isSuccess() const { return status >= 200 && status < 300; }
};

/// Plain requests to web services. Nothing waits on the main thread.
class HTTPClient {
public:
  virtual ~HTTPClient() = default;
  /// Calls `done` once on the main thread, not before this returns, unless the token goes first;
  /// then the request is ended.
  [[nodiscard]] virtual TokenPtr get(const HTTPRequest& request,
                                     std::function<void(const HTTPResponse&)> done) = 0;
  /// Calls `handler` when the network may have come back: the computer got an address. Also when
  /// it got a further one.
  [[nodiscard]] virtual TokenPtr observeNetwork(std::function<void()> handler) = 0;
};

} // namespace tavrin
