#pragma once

#include "TavrinPlatform/RunLoop.h"

#include <functional>
#include <memory>
#include <vector>

namespace tavrin::test {

/// A list of handlers that a test can call; each lives as long as its token.
class HandlerList {
public:
  TokenPtr add(std::function<void()> handler) {
    auto entry = std::make_shared<std::function<void()>>(std::move(handler));
    entries_.push_back(entry);
    struct Entry final : Token {
      explicit Entry(std::shared_ptr<std::function<void()>> held) : held(std::move(held)) {}
      std::shared_ptr<std::function<void()>> held;
    };
    return std::make_unique<Entry>(std::move(entry));
  }
  void call() {
    const auto entries = entries_;
    for (const auto& weak : entries)
      if (const auto entry = weak.lock())
        (*entry)();
  }

private:
  std::vector<std::weak_ptr<std::function<void()>>> entries_;
};

} // namespace tavrin::test
