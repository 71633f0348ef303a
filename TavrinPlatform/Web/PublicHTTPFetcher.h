#pragma once

#include "TavrinPlatform/HTTPClient.h"

namespace tavrin {

struct PublicHTTPRequest {
  std::string url;
  /// Bytes, unpacked, and what a longer answer does.
  std::size_t sizeLimit = 512 * 1024;
  HTTPRequest::Excess excess = HTTPRequest::Excess::fails;
  /// Seconds for all of it, redirects too, from when its turn comes.
  double timeLimit = 8;
};

struct PublicHTTPResponse {
  /// 0 when there was no whole answer, or the guard refused the address or one it led to.
  int status = 0;
  std::string body;
  /// The header of this name, as sent.
  std::string contentType = {};
  /// Where the answer came from in the end.
  std::string url = {};

  bool isSuccess() const { return status >= 200 && status < 300; }
};

/// Fetches addresses that strangers chose: what was copied, what a page names. Only http and https,
/// without a user's name, and only from hosts on the public Internet: one address of a host that is
/// not public refuses it. The connection goes to the address that was checked, so that a second
/// look-up cannot lead elsewhere; each redirect, five at most, is checked anew. One request at a
/// time, the others wait their turn. For the main thread.
class PublicHTTPFetcher {
public:
  static constexpr int longestRedirects = 5;
  static constexpr double connectTimeLimit = 2;

  PublicHTTPFetcher(HTTPClient& http, RunLoop& runLoop);
  /// Its requests are never answered then.
  ~PublicHTTPFetcher();
  PublicHTTPFetcher(const PublicHTTPFetcher&) = delete;
  PublicHTTPFetcher& operator=(const PublicHTTPFetcher&) = delete;

  /// Calls `done` once, not before this returns, unless the token goes first; then the request is
  /// ended. Tokens may outlive the fetcher.
  [[nodiscard]] TokenPtr get(const PublicHTTPRequest& request,
                             std::function<void(const PublicHTTPResponse&)> done);

private:
  class Fetch;
  struct Queue;
  std::shared_ptr<Queue> queue_;
};

} // namespace tavrin
