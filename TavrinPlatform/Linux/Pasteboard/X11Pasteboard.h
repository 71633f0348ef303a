#pragma once

#include "TavrinPlatform/Linux/Pasteboard/PasteboardListener.h"

#include <memory>

namespace tavrin {

/// The desktop's clipboard selection, on a connection and a thread of its own: a program that has
/// copied and hangs holds up nobody. The thread starts with the first `observe` or `write`. Without
/// an X server `write` uses the toolkit's clipboard, which asks for the focus.
class X11Pasteboard final : public Pasteboard {
public:
  explicit X11Pasteboard(RunLoop& runLoop);
  ~X11Pasteboard() override;

  bool canObserve() const override;
  [[nodiscard]] TokenPtr observe(const Limits& limits, Observer observer) override;
  void write(std::vector<Format> formats) override;

private:
  class Worker;
  Worker& worker();

  PasteboardListener listener_;
  std::unique_ptr<Worker> worker_;
};

} // namespace tavrin
