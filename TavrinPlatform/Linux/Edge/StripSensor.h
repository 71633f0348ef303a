#pragma once

#include <QAbstractNativeEventFilter>
#include <QBasicTimer>
#include <QObject>
#include <QRect>
#include <functional>
#include <xcb/xcb.h>

namespace tavrin {

/// Where the pointer fetches a strip that is hidden: a window of an X server without pixels, which
/// no manager cares for. It also feels what is dragged.
class StripSensor final : public QObject, private QAbstractNativeEventFilter {
public:
  explicit StripSensor(std::function<void()> touched);
  ~StripSensor() override;

  /// In pixels of the root window; nowhere with an empty rectangle.
  void put(const QRect& place);
  /// None where it is nowhere.
  xcb_window_t window() const { return place_.isEmpty() ? xcb_window_t{XCB_NONE} : window_; }

  /// The pointer has come or gone; it fetches the strip by staying a moment.
  void pointerMoved(bool isInside);

protected:
  void timerEvent(QTimerEvent* event) override;

private:
  bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;
  void make();
  void answerDrag(const xcb_client_message_event_t& message);

  const std::function<void()> touched_;
  xcb_window_t window_ = XCB_NONE;
  QRect place_;
  QBasicTimer stays_;
};

} // namespace tavrin
