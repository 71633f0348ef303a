#pragma once

#include <QAbstractNativeEventFilter>
#include <QObject>
#include <optional>
#include <xcb/xcb.h>

namespace tavrin {

/// Holds news of another work area back while news of other settings is under way. The toolkit
/// (6.4) measures the screen when it hears of a work area and takes it over a little later: when
/// the scale changes in between, the screen keeps its size in points of the old one, and all that
/// stands on it a place beyond its edge.
class WorkAreaHold final : private QObject, private QAbstractNativeEventFilter {
public:
  WorkAreaHold();
  ~WorkAreaHold() override;
  WorkAreaHold(const WorkAreaHold&) = delete;
  WorkAreaHold& operator=(const WorkAreaHold&) = delete;

private:
  bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;
  void settingsAreTaken();

  /// Never shown; events sent to it come back to this process.
  xcb_window_t own_ = XCB_NONE;
  bool areSettingsUnderWay_ = false;
  std::optional<xcb_property_notify_event_t> held_;
};

} // namespace tavrin
