#pragma once

#include <memory>

namespace tavrin {

/// What `member` holds; made when it is first asked for.
template <class Service, class Make> Service& lazily(std::unique_ptr<Service>& member, Make make) {
  if (!member)
    member = make();
  return *member;
}

} // namespace tavrin
