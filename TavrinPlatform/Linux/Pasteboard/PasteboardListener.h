#pragma once

#include "TavrinPlatform/Pasteboard.h"

#include <memory>
#include <utility>

namespace tavrin {

/// Who is told of copies, on the main thread, by a thread that watches for them. What is under way
/// finds nobody once `set` has been called with none.
class PasteboardListener {
public:
  explicit PasteboardListener(RunLoop& runLoop)
      : runLoop_(runLoop), observer_(std::make_shared<Pasteboard::Observer>()) {}

  /// On the main thread.
  void set(Pasteboard::Observer observer) { *observer_ = std::move(observer); }

  // From the other thread.
  void changed(std::int64_t count) const {
    runLoop_.post([observer = observer_, count] {
      if (const auto handler = observer->changed)
        handler(count);
    });
  }
  void captured(Pasteboard::Capture capture) const {
    runLoop_.post([observer = observer_, capture = std::move(capture)]() mutable {
      if (const auto handler = observer->captured)
        handler(std::move(capture));
    });
  }
  void abandoned(std::int64_t count) const {
    runLoop_.post([observer = observer_, count] {
      if (const auto handler = observer->abandoned)
        handler(count);
    });
  }

private:
  RunLoop& runLoop_;
  std::shared_ptr<Pasteboard::Observer> observer_;
};

} // namespace tavrin
