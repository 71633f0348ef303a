#include "TavrinPlatform/macOS/Input/MacGlobalShortcuts.h"

#include <Carbon/Carbon.h>
#include <array>
#include <utility>

namespace tavrin {
namespace {

/// 'tavr': tells this system's keys from others' in the process.
constexpr OSType signature = 0x74617672;

UInt32 modifiersOf(HotkeyModifiers modifiers) {
  constexpr std::array table = {std::pair{HotkeyModifiers::command, UInt32{cmdKey}},
                                std::pair{HotkeyModifiers::option, UInt32{optionKey}},
                                std::pair{HotkeyModifiers::control, UInt32{controlKey}},
                                std::pair{HotkeyModifiers::shift, UInt32{shiftKey}}};
  UInt32 mask = 0;
  for (const auto& [modifier, bit] : table)
    if (modifiers.contains(modifier))
      mask |= bit;
  return mask;
}

std::string reasonOf(OSStatus status) {
  if (status == eventHotKeyExistsErr)
    return "another program has this key";
  if (status == eventHotKeyInvalidErr)
    return "the keyboard has no such key";
  return "the system returned " + std::to_string(status);
}

class MacGlobalShortcuts final : public GlobalShortcuts {
public:
  ~MacGlobalShortcuts() override {
    letGo();
    if (handler_ != nullptr)
      RemoveEventHandler(handler_);
  }

  std::vector<Refusal> bindValid(const std::vector<Shortcut>& shortcuts,
                                 std::function<void(const std::string& id)> pressed) override {
    letGo();
    pressed_ = std::move(pressed);
    const OSStatus trouble = listen();
    std::vector<Refusal> refusals;
    for (const Shortcut& shortcut : shortcuts) {
      EventHotKeyRef key = nullptr;
      const auto number = static_cast<UInt32>(keys_.size());
      const OSStatus status =
          trouble != noErr
              ? trouble
              : RegisterEventHotKey(shortcut.hotkey.keyCode, modifiersOf(shortcut.hotkey.modifiers),
                                    EventHotKeyID{signature, number}, GetApplicationEventTarget(),
                                    kEventHotKeyNoOptions, &key);
      if (status == noErr && key != nullptr)
        keys_.emplace_back(key, shortcut.id);
      else
        refusals.push_back({shortcut.id, reasonOf(status)});
    }
    return refusals;
  }

private:
  OSStatus listen() {
    if (handler_ != nullptr)
      return noErr;
    constexpr EventTypeSpec press{kEventClassKeyboard, kEventHotKeyPressed};
    return InstallEventHandler(GetApplicationEventTarget(), heard, 1, &press, this, &handler_);
  }

  void letGo() {
    for (const auto& [key, id] : std::exchange(keys_, {}))
      UnregisterEventHotKey(key);
  }

  static OSStatus heard(EventHandlerCallRef, EventRef event, void* context) {
    EventHotKeyID identity{};
    if (GetEventParameter(event, kEventParamDirectObject, typeEventHotKeyID, nullptr,
                          sizeof identity, nullptr, &identity) != noErr ||
        identity.signature != signature)
      return eventNotHandledErr;
    // Copies: the callee may bind anew.
    const auto& self = *static_cast<MacGlobalShortcuts*>(context);
    if (identity.id >= self.keys_.size())
      return eventNotHandledErr;
    const std::string id = self.keys_[identity.id].second;
    if (const auto pressed = self.pressed_)
      pressed(id);
    return noErr;
  }

  EventHandlerRef handler_ = nullptr;
  /// The system's number of a key is its place.
  std::vector<std::pair<EventHotKeyRef, std::string>> keys_;
  std::function<void(const std::string&)> pressed_;
};

} // namespace

std::unique_ptr<GlobalShortcuts> makeMacGlobalShortcuts() {
  return std::make_unique<MacGlobalShortcuts>();
}

} // namespace tavrin
