#include "TavrinPlatform/Linux/X11Shortcuts.h"

#include <QSocketNotifier>
#include <algorithm>
#include <array>
#include <cstdlib>

namespace tavrin {
namespace {

/// Virtual key codes and the kernel's numbers of the same keys; X adds eight to these.
constexpr std::array<std::pair<std::uint16_t, std::uint8_t>, 66> keys = {{
    {0, 30},    {1, 31},    {2, 32},   {3, 33},   {4, 35},   {5, 34},   {6, 44},   {7, 45},
    {8, 46},    {9, 47},    {11, 48},  {12, 16},  {13, 17},  {14, 18},  {15, 19},  {16, 21},
    {17, 20},   {18, 2},    {19, 3},   {20, 4},   {21, 5},   {22, 7},   {23, 6},   {24, 13},
    {25, 10},   {26, 8},    {27, 12},  {28, 9},   {29, 11},  {30, 27},  {31, 24},  {32, 22},
    {33, 26},   {34, 23},   {35, 25},  {36, 28},  {37, 38},  {38, 36},  {39, 40},  {40, 37},
    {41, 39},   {42, 43},   {43, 51},  {44, 53},  {45, 49},  {46, 50},  {47, 52},  {48, 15},
    {49, 57},   {50, 41},   {51, 14},  {53, 1},   {96, 63},  {97, 64},  {98, 65},  {99, 61},
    {100, 66},  {101, 67},  {103, 87}, {109, 68}, {111, 88}, {118, 62}, {120, 60}, {122, 59},
    {123, 105}, {124, 106},
}};

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

std::optional<std::uint8_t> x11KeyCode(std::uint16_t virtualKeyCode) {
  constexpr std::uint8_t offset = 8;
  const auto* found = std::find_if(keys.begin(), keys.end(),
                                   [&](const auto& key) { return key.first == virtualKeyCode; });
  if (found == keys.end())
    return std::nullopt;
  return static_cast<std::uint8_t>(found->second + offset);
}

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
X11Shortcuts::bind(const std::vector<Shortcut>& shortcuts,
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
      refusals.push_back({shortcut.id, "there is no X server to register keys with"});
    } else if (!key) {
      refusals.push_back({shortcut.id, "this keyboard has no such key"});
    } else if (const Chord chord{*key, maskOf(shortcut.hotkey.modifiers)};
               bound_.contains(chord) || !grab(chord)) {
      refusals.push_back({shortcut.id, "the keys are taken"});
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
      if (!id.empty() && pressed_)
        pressed_(id);
    }
    std::free(event);
  }
  if (xcb_connection_has_error(connection_.get()) != 0)
    notifier_->setEnabled(false);
}

} // namespace tavrin
