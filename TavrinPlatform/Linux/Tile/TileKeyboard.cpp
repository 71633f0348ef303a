#include "TavrinPlatform/Linux/Tile/TileKeyboard.h"

#include "TavrinCore/Text/Texts.h"
#include "TavrinCore/Widgets/DockSlot.h"
#include "TavrinPlatform/Linux/Base/X11.h"
#include "TavrinPlatform/Linux/Tile/StripWindow.h"

#include <QAccessible>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenu>
#include <charconv>
#include <utility>

namespace tavrin {

namespace {

constexpr double answerLimit = 1;
constexpr int mostAsks = 4;
/// Milliseconds.
constexpr int betweenAsks = 100;

xcb_window_t windowNumber(std::string_view text) {
  xcb_window_t number = XCB_NONE;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

} // namespace

TileKeyboard::TileKeyboard(Bus& bus, StripWindow& window, std::string_view identifier)
    : bus_(bus), window_(window), slot_(DockSlot::slot(identifier).value_or(0)) {
  settles_.setSingleShot(true);
  QObject::connect(&settles_, &QTimer::timeout, [this] { ask(); });
  window_.onKey = [this](const QKeyEvent& event) { return keyPressed(event); };
  window_.onFocus = [this](bool hasFocus) { focusChanged(hasFocus); };
}

TileKeyboard::~TileKeyboard() {
  window_.onKey = nullptr;
  window_.onFocus = nullptr;
}

bool TileKeyboard::take(const std::string& cameFrom) {
  if (!window_.isVisible())
    return false;
  // The one that has it may be this tile's own.
  if (!cameFrom.empty())
    previous_ = windowNumber(cameFrom);
  else if (!hasIt_)
    previous_ = x11::focusWindow();
  resume();
  if (window_.layers() == nullptr)
    ask();
  return true;
}

void TileKeyboard::resume() {
  if (window_.layers() != nullptr) {
    window_.holdKeys(true);
  } else if (window_.handle() != nullptr) {
    asks_ = mostAsks;
    // A manager gives the focus of a window that goes to another one first.
    settles_.start(betweenAsks);
  }
}

void TileKeyboard::ask() {
  const auto own = static_cast<xcb_window_t>(window_.winId());
  // A server gives it to no window that is not there yet.
  const bool isThere = x11::isViewable(own);
  if (isThere && x11::focusWindow() != own) {
    // Some managers take back what was not asked of them.
    x11::requestActive(own);
    x11::setFocus(own);
  }
  if ((!isThere && window_.isVisible()) || --asks_ > 0)
    settles_.start(betweenAsks);
}

void TileKeyboard::focusChanged(bool hasFocus) {
  hasIt_ = hasFocus;
  settles_.stop();
  // Its own menu has the keyboard for the tile.
  const bool hasMenu = menu_ && menu_->isVisible();
  window_.setFocusRing(hasFocus || hasMenu);
  if (onHold)
    onHold(hasFocus || hasMenu);
  if (!hasFocus) {
    if (!hasMenu)
      window_.holdKeys(false);
    return;
  }
  QAccessibleEvent event(&window_, QAccessible::Focus);
  QAccessible::updateAccessibility(&event);
}

bool TileKeyboard::keyPressed(const QKeyEvent& event) {
  settles_.stop();
  // Where the menu could not take the keyboard itself.
  if (menu_ && menu_->isVisible()) {
    QKeyEvent forMenu(QEvent::KeyPress, event.key(), event.modifiers(), event.text());
    QCoreApplication::sendEvent(menu_.get(), &forMenu);
    return true;
  }
  switch (event.key()) {
  case Qt::Key_Left:
  case Qt::Key_Up:
  case Qt::Key_Backtab:
    handOn(slot_ - 1, -1);
    return true;
  case Qt::Key_Right:
  case Qt::Key_Down:
  case Qt::Key_Tab:
    handOn(slot_ + 1, 1);
    return true;
  case Qt::Key_Home:
    handOn(1, 1);
    return true;
  case Qt::Key_End:
    handOn(DockSlot::count, -1);
    return true;
  case Qt::Key_Return:
  case Qt::Key_Enter:
  case Qt::Key_Space:
    window_.press();
    return true;
  case Qt::Key_F10:
    if (!event.modifiers().testFlag(Qt::ShiftModifier))
      return false;
    [[fallthrough]];
  case Qt::Key_Menu:
    showActions();
    return true;
  case Qt::Key_Escape:
    giveBack();
    return true;
  default:
    return false;
  }
}

void TileKeyboard::handOn(int slot, int step) {
  if (slot < 1 || slot > DockSlot::count || slot == slot_)
    return;
  const auto identifier = DockSlot::bundleIdentifier(slot);
  const auto path = objectPath(identifier);
  BusMessage message = bus_.method(
      {identifier.c_str(), path.c_str(), "org.freedesktop.Application"}, "ActivateAction");
  sd_bus_message_set_auto_start(message.get(), 0);
  message.append("sava{sv}", "focus", 1, "s", std::to_string(previous_).c_str(), 0);
  bus_.call(
      message,
      [this, life = life_.watch(), slot, step](sd_bus_message* reply, const std::string&) {
        if (life.expired())
          return;
        if (reply == nullptr)
          handOn(slot + step, step);
        else
          window_.holdKeys(false);
      },
      answerLimit);
}

void TileKeyboard::giveBack() {
  window_.holdKeys(false);
  if (x11::connection() == nullptr)
    return;
  x11::setFocus(x11::isViewable(previous_) ? previous_
                                           : xcb_window_t{XCB_INPUT_FOCUS_POINTER_ROOT});
}

void TileKeyboard::showActions() {
  if (onMenu)
    onMenu();
  menu_ = std::make_unique<QMenu>();
  QObject::connect(menu_.get(), &QMenu::aboutToHide, [this] {
    window_.setFocusRing(hasIt_);
    if (onHold)
      onHold(hasIt_);
  });
  menu_->addAction(QString::fromStdString(translated("Open")), [this] {
    // The menu has had it for the tile until now.
    hasIt_ = true;
    window_.press();
  });
  for (const auto& button : window_.buttons())
    menu_->addAction(QString::fromStdString(button.name).replace('&', QLatin1String("&&")),
                     [this, place = button.place.center()] {
                       if (window_.onClick)
                         window_.onClick(place);
                     });
  menu_->winId();
  // On a layer shell it stands for itself: the toolkit takes its place for one beside the tile.
  if (window_.layers() == nullptr)
    menu_->windowHandle()->setTransientParent(&window_);
  menu_->setActiveAction(menu_->actions().constFirst());
  const QSize size = menu_->sizeHint();
  const QRect tile = window_.place();
  menu_->popup({tile.center().x() - size.width() / 2, tile.top() - size.height()});
}

} // namespace tavrin
