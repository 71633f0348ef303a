#pragma once

#include "TavrinPlatform/RunLoop.h"

#include <functional>
#include <list>
#include <memory>

namespace tavrin {

/// Handlers of one event, each there as long as its token. A handler may drop any token,
/// its own included, and the list itself may go before the tokens.
class HandlerList {
public:
  using Handler = std::function<void()>;

  [[nodiscard]] TokenPtr add(Handler handler) {
    const auto shared = std::make_shared<Handler>(std::move(handler));
    return std::make_unique<Entry>(handlers_, handlers_->insert(handlers_->end(), shared));
  }
  void call() const {
    const std::list<std::weak_ptr<Handler>> all(handlers_->begin(), handlers_->end());
    for (const auto& weak : all)
      if (const auto handler = weak.lock())
        (*handler)();
  }

private:
  using Handlers = std::list<std::shared_ptr<Handler>>;
  class Entry final : public Token {
  public:
    Entry(std::shared_ptr<Handlers> handlers, Handlers::iterator place)
        : handlers_(std::move(handlers)), place_(place) {}
    ~Entry() override { handlers_->erase(place_); }

  private:
    std::shared_ptr<Handlers> handlers_;
    Handlers::iterator place_;
  };

  std::shared_ptr<Handlers> handlers_ = std::make_shared<Handlers>();
};

} // namespace tavrin
