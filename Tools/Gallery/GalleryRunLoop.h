#pragma once

#include "TavrinPlatform/RunLoop.h"

namespace tavrin {

/// Does everything at once, and never lets time pass.
class GalleryRunLoop final : public RunLoop {
public:
  TokenPtr repeat(double, std::function<void()>) override { return nullptr; }
  TokenPtr after(double, std::function<void()>) override { return nullptr; }
  void post(std::function<void()> work) override { work(); }
  void background(std::function<void()> work, std::weak_ptr<void> owner,
                  std::function<void()> done) override {
    work();
    if (owner.lock())
      done();
  }
  std::unique_ptr<SerialQueue> makeSerialQueue() override { return nullptr; }
};

} // namespace tavrin
