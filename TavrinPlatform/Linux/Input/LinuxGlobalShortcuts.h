#pragma once

#include "TavrinPlatform/Linux/Input/PortalShortcuts.h"
#include "TavrinPlatform/Linux/Input/X11Shortcuts.h"

namespace tavrin {

/// The desktop's portal where it is on the session bus, else grabs of the X server's keys.
class LinuxGlobalShortcuts final : public GlobalShortcuts {
public:
  /// `session` may be null and must outlive this. Needs an event loop.
  LinuxGlobalShortcuts(Bus* session, std::string applicationIdentifier)
      : session_(session), applicationIdentifier_(std::move(applicationIdentifier)) {}

protected:
  std::vector<Refusal> bindValid(const std::vector<Shortcut>& shortcuts,
                                 std::function<void(const std::string& id)> pressed) override;

private:
  PortalShortcuts& portal();
  std::vector<Refusal> grab();
  void press(const std::string& id);
  void refuse(const Refusal& refusal);

  Bus* session_;
  std::string applicationIdentifier_;
  std::vector<Shortcut> shortcuts_;
  std::function<void(const std::string&)> pressed_;
  std::unique_ptr<PortalShortcuts> portal_;
  std::unique_ptr<X11Shortcuts> grabs_;
};

} // namespace tavrin
