#pragma once

#include "TavrinPlatform/Linux/Base/Bus.h"

#include <QBasicTimer>
#include <QObject>
#include <functional>
#include <memory>

namespace tavrin {

/// Waits for a message bus that was lost to be there again. What stood on the lost connection
/// (names, subscriptions, what libraries keep of it) is not mended piece by piece: whoever waits
/// begins anew.
class BusReturn final : public QObject {
public:
  using Open = std::function<std::unique_ptr<Bus>()>;

  /// `isBack` is called with each look that finds the bus, until it says true.
  BusReturn(Open open, std::function<bool()> isBack);

protected:
  void timerEvent(QTimerEvent*) override;

private:
  Open open_;
  std::function<bool()> isBack_;
  QBasicTimer timer_;
  int interval_;
};

} // namespace tavrin
