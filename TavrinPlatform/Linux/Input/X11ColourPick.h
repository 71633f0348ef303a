#pragma once

#include "TavrinPlatform/ColourSampler.h"
#include "TavrinPlatform/Linux/Pasteboard/SelectionConnection.h"

#include <QElapsedTimer>
#include <QImage>
#include <QObject>
#include <QPoint>
#include <functional>
#include <memory>

class QSocketNotifier;
class QWidget;

namespace tavrin {

/// Picks a pixel of the X screen: the pointer becomes a cross, a magnifier goes with it. A click or
/// Return takes the colour, Escape or another button gives up, the arrow keys move by a pixel.
class X11ColourPick final : public Token, public QObject {
public:
  /// `done` is called once, later; it may drop this object.
  explicit X11ColourPick(std::function<void(const ColourSample&)> done);
  ~X11ColourPick() override;

private:
  bool grab();
  /// Whether the keys come here; a shortcut that is still held keeps them from it.
  bool grabKeys();
  void grabKeysLater(int attempts);
  void learnKeys();
  void read();
  void handle(const xcb_generic_event_t& event);
  void pressed(std::uint32_t key);
  void follow(QPoint pointer);
  /// The square of the screen about a pixel; black beyond the screen's edge.
  QImage around(QPoint pixel, int reach) const;
  void take(QPoint pixel);
  void finish(const ColourSample& sample);

  struct Disconnect {
    void operator()(xcb_connection_t* x) const { xcb_disconnect(x); }
  };
  std::function<void(const ColourSample&)> done_;
  std::unique_ptr<xcb_connection_t, Disconnect> x_;
  const xcb_screen_t* screen_ = nullptr;
  std::unique_ptr<QSocketNotifier> notifier_;
  std::unique_ptr<QWidget> magnifier_;
  ReplyPtr<xcb_get_keyboard_mapping_reply_t> keys_;
  QPoint pointer_;
  /// Since the lens last lay where the pointer came.
  QElapsedTimer uncovering_;
};

} // namespace tavrin
