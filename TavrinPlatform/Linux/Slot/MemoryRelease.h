#pragma once

#include <QTimer>

namespace tavrin {

/// Gives memory that is not in use back to the system, some time after the last call of `soon`:
/// what start-up, an open panel and many pictures leave behind would stay with the process for its
/// life. Costs no wake-up but the one that does it.
class MemoryRelease {
public:
  MemoryRelease();

  void soon() { timer_.start(); }

private:
  QTimer timer_;
};

} // namespace tavrin
