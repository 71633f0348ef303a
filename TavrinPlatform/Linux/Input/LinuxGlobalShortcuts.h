#pragma once

#include "TavrinPlatform/Linux/Input/PortalShortcuts.h"
#include "TavrinPlatform/Linux/Input/X11Shortcuts.h"

namespace tavrin {

/// The desktop's portal where it is on the session bus, else grabs of the X server's keys. On a
/// compositor's X server these come only while an X program has the keyboard: there all is refused.
class LinuxGlobalShortcuts final : public GlobalShortcuts {
public:
  /// `session` may be null and must outlive this. Needs an event loop.
  LinuxGlobalShortcuts(Bus* session, std::string applicationIdentifier, bool isOnCompositor)
      : session_(session), applicationIdentifier_(std::move(applicationIdentifier)),
        isOnCompositor_(isOnCompositor) {}

protected:
  std::vector<Refusal> bindValid(const std::vector<Shortcut>& shortcuts,
                                 std::function<void(const std::string& id)> pressed) override;

private:
  PortalShortcuts& portal();
  /// Without a portal.
  std::vector<Refusal> grab();
  void press(const std::string& id);
  void refuse(const Refusal& refusal);

  Bus* session_;
  std::string applicationIdentifier_;
  bool isOnCompositor_;
  std::vector<Shortcut> shortcuts_;
  std::function<void(const std::string&)> pressed_;
  std::unique_ptr<PortalShortcuts> portal_;
  std::unique_ptr<X11Shortcuts> grabs_;
};

} // namespace tavrin
