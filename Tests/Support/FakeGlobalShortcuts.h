#pragma once

#include "TavrinPlatform/GlobalShortcuts.h"

namespace tavrin::test {

/// Registers everything, and refuses what the test says.
class FakeGlobalShortcuts final : public GlobalShortcuts {
public:
  std::vector<Shortcut> bound;
  std::vector<Refusal> refusals;
  std::function<void(const std::string&)> pressed;
  int binds = 0;

protected:
  std::vector<Refusal> bindValid(const std::vector<Shortcut>& wanted,
                                 std::function<void(const std::string&)> handler) override {
    bound = wanted;
    pressed = std::move(handler);
    ++binds;
    return refusals;
  }
};

} // namespace tavrin::test
