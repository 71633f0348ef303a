#pragma once

#include "TavrinCore/Dock/Hotkey.h"

#include <functional>
#include <string>
#include <vector>

namespace tavrin {

/// Keys that reach this process whatever application is in front.
class GlobalShortcuts {
public:
  struct Shortcut {
    /// Names the shortcut to the desktop and to `pressed`.
    std::string id;
    std::string description;
    Hotkey hotkey;
    bool operator==(const Shortcut&) const = default;
  };
  struct Refusal {
    std::string id;
    /// A clause that can follow "because".
    std::string reason;
    bool operator==(const Refusal&) const = default;
  };

  virtual ~GlobalShortcuts() = default;
  /// Registers exactly these, in place of those before. `pressed` is called on the main thread.
  /// Answers those that could not be registered: another program has the key, the keyboard lacks
  /// it, or this desktop has no such service.
  virtual std::vector<Refusal> bind(const std::vector<Shortcut>& shortcuts,
                                    std::function<void(const std::string& id)> pressed) = 0;

  /// Called on the main thread for what is refused after `bind` has returned: some desktops ask
  /// the user first, who may also take a shortcut back. May be empty.
  std::function<void(const Refusal& refusal)> onRefused;
};

} // namespace tavrin
