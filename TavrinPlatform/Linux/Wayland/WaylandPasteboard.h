#pragma once

#include "TavrinPlatform/Linux/Pasteboard/PasteboardListener.h"

namespace tavrin {

/// A compositor's clipboard by its data control, on a connection and a thread of its own: a program
/// that has copied and hangs holds up nobody. Needs no focus, and no window.
///
/// A copier that ends and one that takes its copy back look alike here: both are `abandoned`.
class WaylandPasteboard final : public Pasteboard {
public:
  explicit WaylandPasteboard(RunLoop& runLoop);
  ~WaylandPasteboard() override;

  /// Whether there is a compositor that lets programs see what was copied. Without it nothing else
  /// does anything.
  bool canObserve() const override { return worker_ != nullptr; }
  [[nodiscard]] TokenPtr observe(const Limits& limits, Observer observer) override;
  void write(std::vector<Format> formats) override;

private:
  class Worker;

  PasteboardListener listener_;
  std::unique_ptr<Worker> worker_;
};

} // namespace tavrin
