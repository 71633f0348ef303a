#pragma once

#include "TavrinCore/Base/Hotkey.h"

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

  /// Why a shortcut without a modifier that `isValidForGlobalHotkey` is never registered, wherever
  /// it comes from: its key would be taken from every application.
  static constexpr const char* lacksModifier = "it lacks a modifier key other than Shift";

  virtual ~GlobalShortcuts() = default;
  /// Registers exactly these, in place of those before. `pressed` is called on the main thread.
  /// Answers those that could not be registered: a modifier is missing, another program has the
  /// key, the keyboard lacks it, or this desktop has no such service.
  std::vector<Refusal> bind(const std::vector<Shortcut>& shortcuts,
                            std::function<void(const std::string& id)> pressed) {
    std::vector<Shortcut> valid;
    std::vector<Refusal> refusals;
    for (const auto& shortcut : shortcuts)
      if (shortcut.hotkey.modifiers.isValidForGlobalHotkey())
        valid.push_back(shortcut);
      else
        refusals.push_back({shortcut.id, lacksModifier});
    for (auto& refusal : bindValid(valid, std::move(pressed)))
      refusals.push_back(std::move(refusal));
    return refusals;
  }

  /// Called on the main thread for what is refused after `bind` has returned: some desktops ask
  /// the user first, who may also take a shortcut back. May be empty.
  std::function<void(const Refusal& refusal)> onRefused;

protected:
  /// `bind` of shortcuts whose modifiers have been judged.
  virtual std::vector<Refusal> bindValid(const std::vector<Shortcut>& shortcuts,
                                         std::function<void(const std::string& id)> pressed) = 0;
};

} // namespace tavrin
