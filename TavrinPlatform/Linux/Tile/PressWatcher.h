#pragma once

#include <QObject>
#include <QPoint>
#include <functional>
#include <memory>
#include <xcb/xcb.h>

class QSocketNotifier;

namespace tavrin {

/// Tells of every press of a mouse button anywhere, whoever gets it: raw events of the X input
/// extension on a connection of its own, which needs no grab and disturbs nobody.
class PressWatcher final : public QObject {
public:
  /// `pressed` is told the pointer in pixels of the root window.
  explicit PressWatcher(std::function<void(QPoint)> pressed);
  ~PressWatcher() override;

private:
  void select();
  void read();

  struct Disconnect {
    void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
  };
  std::function<void(QPoint)> pressed_;
  std::unique_ptr<xcb_connection_t, Disconnect> connection_;
  std::unique_ptr<QSocketNotifier> notifier_;
  std::uint8_t extension_ = 0;
};

} // namespace tavrin
