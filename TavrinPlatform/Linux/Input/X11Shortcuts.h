#pragma once

#include "TavrinPlatform/GlobalShortcuts.h"

#include <cstdint>
#include <map>
#include <memory>
#include <xcb/xcb.h>

class QSocketNotifier;

namespace tavrin {

/// Key grabs on the root window, on a connection of their own. Command is Super, option is Alt.
/// The lock keys do not matter.
class X11Shortcuts final : public GlobalShortcuts {
public:
  X11Shortcuts();
  ~X11Shortcuts() override;

protected:
  std::vector<Refusal> bindValid(const std::vector<Shortcut>& shortcuts,
                                 std::function<void(const std::string& id)> pressed) override;

private:
  struct Disconnect {
    void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
  };
  /// A key number and the modifiers held with it.
  using Chord = std::pair<std::uint8_t, std::uint16_t>;

  bool grab(const Chord& chord);
  void ungrab(const Chord& chord);
  void readEvents();

  std::unique_ptr<xcb_connection_t, Disconnect> connection_;
  xcb_window_t root_ = 0;
  std::map<Chord, std::string> bound_;
  std::function<void(const std::string&)> pressed_;
  std::unique_ptr<QSocketNotifier> notifier_;
};

} // namespace tavrin
