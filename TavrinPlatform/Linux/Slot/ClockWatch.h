#pragma once

#include <QObject>
#include <functional>
#include <memory>

class QSocketNotifier;

namespace tavrin {

/// A kernel timer on the wall clock. It wakes the process at midnight and when somebody sets the
/// clock, and not in between.
class ClockWatch final : public QObject {
public:
  ClockWatch();
  ~ClockWatch() override;

  std::function<void()> onClockChange;
  /// The local day is another one, by the passing of midnight or by a change of the clock.
  std::function<void()> onDayChange;

  /// After a change of the time zone.
  void recheck();

private:
  void expired();
  void arm();

  int descriptor_;
  int day_ = 0;
  std::unique_ptr<QSocketNotifier> notifier_;
};

} // namespace tavrin
