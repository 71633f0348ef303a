#include "TavrinPlatform/Linux/Input/X11ColourPick.h"

#include "TavrinPlatform/Linux/Input/ColourLens.h"

#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QSocketNotifier>
#include <QTimer>
#include <QWidget>
#include <algorithm>

namespace tavrin {

namespace {

using Outcome = ColourSample::Outcome;

/// The cross of the cursor font.
constexpr std::uint16_t crosshair = 34;

/// Milliseconds until a window has painted what was uncovered.
constexpr int uncoveringTime = 100;

constexpr std::uint32_t escapeKey = 0xFF1B;
constexpr std::uint32_t returnKey = 0xFF0D;
constexpr std::uint32_t enterKey = 0xFF8D;
constexpr std::uint32_t leftKey = 0xFF51;
constexpr std::uint32_t upKey = 0xFF52;
constexpr std::uint32_t rightKey = 0xFF53;
constexpr std::uint32_t downKey = 0xFF54;

class Magnifier final : public QWidget {
public:
  Magnifier()
      : QWidget(nullptr, Qt::ToolTip | Qt::FramelessWindowHint | Qt::BypassWindowManagerHint |
                             Qt::WindowTransparentForInput | Qt::WindowDoesNotAcceptFocus) {
    setAttribute(Qt::WA_ShowWithoutActivating);
    setFixedSize(ColourLens::size);
  }
  void setPixels(const QImage& pixels) {
    pixels_ = pixels;
    update();
  }

protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    ColourLens::paint(painter, pixels_);
  }

private:
  QImage pixels_{2 * ColourLens::reach + 1, 2 * ColourLens::reach + 1, QImage::Format_RGB32};
};

} // namespace

X11ColourPick::X11ColourPick(std::function<void(const ColourSample&)> done)
    : done_(std::move(done)), x_(xcb_connect(nullptr, nullptr)) {
  if (xcb_connection_has_error(x_.get()) == 0)
    screen_ = xcb_setup_roots_iterator(xcb_get_setup(x_.get())).data;
  if (screen_ == nullptr || !grab()) {
    QTimer::singleShot(0, this, [this] { finish({Outcome::unavailable, 0, 0, 0}); });
    return;
  }
  constexpr int attempts = 30;
  grabKeysLater(attempts);
  learnKeys();
  notifier_ =
      std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(x_.get()), QSocketNotifier::Read);
  connect(notifier_.get(), &QSocketNotifier::activated, this, &X11ColourPick::read);
  magnifier_ = std::make_unique<Magnifier>();
  const ReplyPtr<xcb_query_pointer_reply_t> place(
      xcb_query_pointer_reply(x_.get(), xcb_query_pointer(x_.get(), screen_->root), nullptr));
  if (place)
    follow({place->root_x, place->root_y});
  magnifier_->show();
  // Events may have been read along with the answers.
  QTimer::singleShot(0, this, [this] { read(); });
}

X11ColourPick::~X11ColourPick() = default;

bool X11ColourPick::grab() {
  const xcb_font_t font = xcb_generate_id(x_.get());
  const xcb_cursor_t cursor = xcb_generate_id(x_.get());
  xcb_open_font(x_.get(), font, 6, "cursor");
  xcb_create_glyph_cursor(x_.get(), cursor, font, font, crosshair, crosshair + 1, 0, 0, 0, 0xFFFF,
                          0xFFFF, 0xFFFF);
  const auto pointerCookie = xcb_grab_pointer(
      x_.get(), 0, screen_->root, XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_POINTER_MOTION,
      XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC, XCB_NONE, cursor, XCB_CURRENT_TIME);
  const ReplyPtr<xcb_grab_pointer_reply_t> pointer(
      xcb_grab_pointer_reply(x_.get(), pointerCookie, nullptr));
  return pointer && pointer->status == XCB_GRAB_STATUS_SUCCESS;
}

bool X11ColourPick::grabKeys() {
  const ReplyPtr<xcb_grab_keyboard_reply_t> keys(
      xcb_grab_keyboard_reply(x_.get(),
                              xcb_grab_keyboard(x_.get(), 0, screen_->root, XCB_CURRENT_TIME,
                                                XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
                              nullptr));
  return keys && keys->status == XCB_GRAB_STATUS_SUCCESS;
}

void X11ColourPick::grabKeysLater(int attempts) {
  // Without the keyboard a click still does.
  if (!done_ || attempts == 0 || grabKeys())
    return;
  constexpr int pause = 100;
  QTimer::singleShot(pause, this, [this, attempts] { grabKeysLater(attempts - 1); });
}

void X11ColourPick::learnKeys() {
  const auto* setup = xcb_get_setup(x_.get());
  const auto number = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
  keys_.reset(xcb_get_keyboard_mapping_reply(
      x_.get(), xcb_get_keyboard_mapping(x_.get(), setup->min_keycode, number), nullptr));
}

void X11ColourPick::read() {
  while (done_) {
    const ReplyPtr<xcb_generic_event_t> event(xcb_poll_for_event(x_.get()));
    if (!event)
      break;
    handle(*event);
  }
  if (done_ && xcb_connection_has_error(x_.get()) != 0)
    finish({Outcome::unavailable, 0, 0, 0});
}

void X11ColourPick::handle(const xcb_generic_event_t& event) {
  switch (event.response_type & 0x7F) {
  case XCB_MOTION_NOTIFY: {
    const auto& motion = reinterpret_cast<const xcb_motion_notify_event_t&>(event);
    follow({motion.root_x, motion.root_y});
    break;
  }
  case XCB_BUTTON_PRESS: {
    const auto& press = reinterpret_cast<const xcb_button_press_event_t&>(event);
    if (press.detail == XCB_BUTTON_INDEX_1)
      take({press.root_x, press.root_y});
    else if (press.detail == XCB_BUTTON_INDEX_2 || press.detail == XCB_BUTTON_INDEX_3)
      finish({});
    break;
  }
  case XCB_KEY_PRESS: {
    const auto& press = reinterpret_cast<const xcb_key_press_event_t&>(event);
    if (!keys_)
      break;
    const auto row = static_cast<std::size_t>(press.detail - xcb_get_setup(x_.get())->min_keycode);
    pressed(xcb_get_keyboard_mapping_keysyms(keys_.get())[row * keys_->keysyms_per_keycode]);
    break;
  }
  default:
    break;
  }
}

void X11ColourPick::pressed(std::uint32_t key) {
  QPoint step;
  switch (key) {
  case escapeKey:
    finish({});
    return;
  case returnKey:
  case enterKey:
    take(pointer_);
    return;
  case leftKey:
    step = {-1, 0};
    break;
  case rightKey:
    step = {1, 0};
    break;
  case upKey:
    step = {0, -1};
    break;
  case downKey:
    step = {0, 1};
    break;
  default:
    return;
  }
  xcb_warp_pointer(x_.get(), XCB_NONE, XCB_NONE, 0, 0, 0, 0, static_cast<std::int16_t>(step.x()),
                   static_cast<std::int16_t>(step.y()));
  xcb_flush(x_.get());
  // The next key may be here before the news of this move.
  const QRect whole(0, 0, screen_->width_in_pixels, screen_->height_in_pixels);
  if (whole.contains(pointer_ + step))
    follow(pointer_ + step);
}

void X11ColourPick::follow(QPoint pointer) {
  pointer_ = pointer;
  auto& lens = static_cast<Magnifier&>(*magnifier_);
  lens.setPixels(around(pointer, ColourLens::reach));
  const QScreen* screen = QGuiApplication::primaryScreen();
  const double scale = screen != nullptr ? screen->devicePixelRatio() : 1;
  const QRect room(0, 0, static_cast<int>(screen_->width_in_pixels / scale),
                   static_cast<int>(screen_->height_in_pixels / scale));
  const QPoint place = (QPointF(pointer) / scale).toPoint();
  if (lens.isVisible() && lens.geometry().contains(place))
    uncovering_.start();
  lens.move(ColourLens::beside(place, room));
}

QImage X11ColourPick::around(QPoint pixel, int reach) const {
  const int side = 2 * reach + 1;
  QImage picture(side, side, QImage::Format_RGB32);
  picture.fill(Qt::black);
  const QRect whole(0, 0, screen_->width_in_pixels, screen_->height_in_pixels);
  const QRect wanted(pixel.x() - reach, pixel.y() - reach, side, side);
  const QRect there = wanted & whole;
  if (there.isEmpty() || screen_->root_depth < 24)
    return picture;
  const auto cookie = xcb_get_image(
      x_.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, screen_->root, static_cast<std::int16_t>(there.x()),
      static_cast<std::int16_t>(there.y()), static_cast<std::uint16_t>(there.width()),
      static_cast<std::uint16_t>(there.height()), ~0U);
  const ReplyPtr<xcb_get_image_reply_t> reply(xcb_get_image_reply(x_.get(), cookie, nullptr));
  const auto needed =
      static_cast<std::size_t>(there.width()) * static_cast<std::size_t>(there.height()) * 4;
  if (!reply || static_cast<std::size_t>(xcb_get_image_data_length(reply.get())) < needed)
    return picture;
  const QImage found(xcb_get_image_data(reply.get()), there.width(), there.height(),
                     QImage::Format_RGB32);
  QPainter(&picture).drawImage(there.topLeft() - wanted.topLeft(), found);
  return picture;
}

void X11ColourPick::take(QPoint pixel) {
  // What the lens lay over a moment ago is painted again by whose it is.
  if (uncovering_.isValid() && !uncovering_.hasExpired(uncoveringTime)) {
    QTimer::singleShot(uncoveringTime, this, [this, pixel] {
      uncovering_.invalidate();
      if (done_)
        take(pixel);
    });
    return;
  }
  const QColor colour = around(pixel, 0).pixelColor(0, 0);
  finish(screen_->root_depth < 24
             ? ColourSample{Outcome::unavailable, 0, 0, 0}
             : ColourSample{Outcome::picked, colour.red(), colour.green(), colour.blue()});
}

void X11ColourPick::finish(const ColourSample& sample) {
  if (notifier_)
    notifier_->setEnabled(false);
  if (magnifier_)
    magnifier_->hide();
  xcb_ungrab_pointer(x_.get(), XCB_CURRENT_TIME);
  xcb_ungrab_keyboard(x_.get(), XCB_CURRENT_TIME);
  xcb_flush(x_.get());
  // The callee drops this object, and with it the notifier that is just calling.
  if (auto done = std::exchange(done_, nullptr))
    QTimer::singleShot(0, this, [done = std::move(done), sample] { done(sample); });
}

} // namespace tavrin
