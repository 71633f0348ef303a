#pragma once

#include "TavrinPlatform/HTTPClient.h"
#include "Tests/Support/HandlerList.h"
#include "Tests/Support/ManualRunLoop.h"

#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace tavrin::test {

/// Requests wait until the test answers them, or answer with `automatic` when posts run.
class FakeHTTPClient final : public HTTPClient {
public:
  explicit FakeHTTPClient(ManualRunLoop& loop) : loop_(loop) {}

  TokenPtr get(const HTTPRequest& request, std::function<void(const HTTPResponse&)> done) override {
    urls.push_back(request.url);
    requests.push_back(request);
    auto exchange = std::make_shared<Exchange>(Exchange{request.url, std::move(done)});
    waiting_.push_back(exchange);
    if (automatic)
      loop_.post([this, url = request.url] { answer(url, *automatic); });
    struct Request final : Token {
      explicit Request(std::shared_ptr<Exchange> held) : exchange(std::move(held)) {}
      std::shared_ptr<Exchange> exchange;
    };
    return std::make_unique<Request>(std::move(exchange));
  }
  /// Answers from `hosts` when time passes.
  TokenPtr resolve(const std::string& host,
                   std::function<void(const std::vector<std::string>&)> done) override {
    lookups.push_back(host);
    return loop_.after(0, [this, host, done = std::move(done)] { done(hosts[host]); });
  }
  TokenPtr observeNetwork(std::function<void()> handler) override {
    return network.add(std::move(handler));
  }

  /// Requests that were made and neither answered nor dropped.
  int open() const {
    return static_cast<int>(std::count_if(waiting_.begin(), waiting_.end(),
                                          [](const auto& entry) { return !entry.expired(); }));
  }
  /// Answers the oldest open request whose address holds `part`; false when there is none.
  bool answer(const std::string& part, const HTTPResponse& response) {
    for (auto it = waiting_.begin(); it != waiting_.end(); ++it) {
      const auto exchange = it->lock();
      if (exchange && exchange->url.find(part) != std::string::npos) {
        waiting_.erase(it);
        const auto done = exchange->done;
        done(response);
        return true;
      }
    }
    return false;
  }

  std::vector<std::string> urls;
  std::vector<HTTPRequest> requests;
  std::vector<std::string> lookups;
  std::map<std::string, std::vector<std::string>> hosts;
  std::optional<HTTPResponse> automatic;
  HandlerList network;

private:
  struct Exchange {
    std::string url;
    std::function<void(const HTTPResponse&)> done;
  };
  ManualRunLoop& loop_;
  std::vector<std::weak_ptr<Exchange>> waiting_;
};

} // namespace tavrin::test
