#include "TavrinPlatform/Linux/Input/LinuxGlobalShortcuts.h"

#include "TavrinPlatform/Linux/Input/ShortcutKeys.h"

namespace tavrin {

std::vector<GlobalShortcuts::Refusal>
LinuxGlobalShortcuts::bindValid(const std::vector<Shortcut>& shortcuts,
                                std::function<void(const std::string& id)> pressed) {
  shortcuts_ = shortcuts;
  pressed_ = std::move(pressed);
  if (grabs_ || session_ == nullptr || !session_->isOpen())
    return grab();
  std::vector<Refusal> refusals;
  std::erase_if(shortcuts_, [&](const Shortcut& shortcut) {
    const bool hasKey = portalTrigger(shortcut.hotkey).has_value();
    if (!hasKey)
      refusals.push_back({shortcut.id, translated(noSuchKey)});
    return !hasKey;
  });
  portal().bind(shortcuts_);
  return refusals;
}

PortalShortcuts& LinuxGlobalShortcuts::portal() {
  if (!portal_)
    portal_ = std::make_unique<PortalShortcuts>(
        *session_, applicationIdentifier_,
        PortalShortcuts::Listener{[this](const std::string& id) { press(id); },
                                  [this](const Refusal& refusal) { refuse(refusal); },
                                  [this] {
                                    portal_.reset();
                                    for (const auto& refusal : grab())
                                      refuse(refusal);
                                  }});
  return *portal_;
}

std::vector<GlobalShortcuts::Refusal> LinuxGlobalShortcuts::grab() {
  if (isOnCompositor_) {
    std::vector<Refusal> refusals;
    for (const auto& shortcut : shortcuts_)
      refusals.push_back({shortcut.id, translated("this desktop gives programs no keys")});
    return refusals;
  }
  if (!grabs_)
    grabs_ = std::make_unique<X11Shortcuts>();
  return grabs_->bind(shortcuts_, [this](const std::string& id) { press(id); });
}

void LinuxGlobalShortcuts::press(const std::string& id) {
  // The callee may bind anew.
  if (const auto pressed = pressed_)
    pressed(id);
}

void LinuxGlobalShortcuts::refuse(const Refusal& refusal) {
  if (onRefused)
    onRefused(refusal);
}

} // namespace tavrin
