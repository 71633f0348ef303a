#include "TavrinPlatform/Linux/Input/X11Shortcuts.h"

#include "TavrinCore/Text/Texts.h"
#include "TavrinPlatform/Linux/Input/ShortcutKeys.h"

#include <QSocketNotifier>
#include <array>
#include <cstdlib>

namespace tavrin {
namespace {

/// The masks of Caps Lock and Num Lock, alone and together: a grab is for exact modifiers.
constexpr std::array<std::uint16_t, 4> locks = {0, XCB_MOD_MASK_LOCK, XCB_MOD_MASK_2,
                                                XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2};
constexpr std::uint16_t modifierMask =
    XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1 | XCB_MOD_MASK_4;

std::uint16_t maskOf(HotkeyModifiers modifiers) {
  unsigned mask = 0;
  for (const auto& [modifier, bit] : {std::pair{HotkeyModifiers::command, XCB_MOD_MASK_4},
                                      std::pair{HotkeyModifiers::option, XCB_MOD_MASK_1},
                                      std::pair{HotkeyModifiers::control, XCB_MOD_MASK_CONTROL},
                                      std::pair{HotkeyModifiers::shift, XCB_MOD_MASK_SHIFT}})
    if (modifiers.contains(modifier))
      mask |= static_cast<unsigned>(bit);
  return static_cast<std::uint16_t>(mask);
}

} // namespace

X11Shortcuts::X11Shortcuts() {
  int screen = 0;
  connection_.reset(xcb_connect(nullptr, &screen));
  if (xcb_connection_has_error(connection_.get()) != 0) {
    connection_.reset();
    return;
  }
  auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection_.get()));
  for (; screen > 0; --screen)
    xcb_screen_next(&screens);
  root_ = screens.data->root;
  notifier_ = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(connection_.get()),
                                                QSocketNotifier::Read);
  QObject::connect(notifier_.get(), &QSocketNotifier::activated, [this] { readEvents(); });
}

X11Shortcuts::~X11Shortcuts() = default;

bool X11Shortcuts::grab(const Chord& chord) {
  for (const auto lock : locks) {
    const auto cookie = xcb_grab_key_checked(connection_.get(), 1, root_,
                                             static_cast<std::uint16_t>(chord.second | lock),
                                             chord.first, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    auto* error = xcb_request_check(connection_.get(), cookie);
    if (error == nullptr)
      continue;
    std::free(error);
    ungrab(chord);
    return false;
  }
  return true;
}

void X11Shortcuts::ungrab(const Chord& chord) {
  for (const auto lock : locks)
    xcb_ungrab_key(connection_.get(), chord.first, root_,
                   static_cast<std::uint16_t>(chord.second | lock));
}

std::vector<GlobalShortcuts::Refusal>
X11Shortcuts::bindValid(const std::vector<Shortcut>& shortcuts,
                        std::function<void(const std::string& id)> pressed) {
  std::vector<Refusal> refusals;
  if (connection_)
    for (const auto& [chord, unused] : bound_)
      ungrab(chord);
  bound_.clear();
  pressed_ = std::move(pressed);
  for (const auto& shortcut : shortcuts) {
    const auto key = x11KeyCode(shortcut.hotkey.keyCode);
    if (!connection_) {
      refusals.push_back({shortcut.id, translated("there is no X server to register keys with")});
    } else if (!key) {
      refusals.push_back({shortcut.id, translated(noSuchKey)});
    } else if (const Chord chord{*key, maskOf(shortcut.hotkey.modifiers)};
               bound_.contains(chord) || !grab(chord)) {
      refusals.push_back({shortcut.id, translated("the keys are taken")});
    } else {
      bound_.emplace(chord, shortcut.id);
    }
  }
  if (connection_)
    xcb_flush(connection_.get());
  readEvents();
  return refusals;
}

void X11Shortcuts::readEvents() {
  if (!connection_)
    return;
  while (auto* event = xcb_poll_for_event(connection_.get())) {
    if ((event->response_type & 0x7F) == XCB_KEY_PRESS) {
      const auto& press = *reinterpret_cast<xcb_key_press_event_t*>(event);
      const auto found =
          bound_.find({press.detail, static_cast<std::uint16_t>(press.state & modifierMask)});
      const auto id = found == bound_.end() ? std::string() : found->second;
      // The callee may bind anew.
      if (const auto pressed = pressed_; pressed && !id.empty())
        pressed(id);
    }
    std::free(event);
  }
  if (xcb_connection_has_error(connection_.get()) != 0)
    notifier_->setEnabled(false);
}

} // namespace tavrin
