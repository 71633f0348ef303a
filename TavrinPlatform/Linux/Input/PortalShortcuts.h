#pragma once

#include "TavrinPlatform/GlobalShortcuts.h"
#include "TavrinPlatform/Linux/Base/PortalRequest.h"

namespace tavrin {

/// Shortcuts registered with the desktop's portal: it may show them to the user, who may choose
/// other keys or decline.
class PortalShortcuts {
public:
  struct Listener {
    std::function<void(const std::string& id)> pressed;
    std::function<void(const GlobalShortcuts::Refusal& refusal)> refused;
    /// There is no such portal, or it failed; nothing is registered with it. May drop the
    /// `PortalShortcuts`.
    std::function<void()> unavailable;
  };

  /// The desktop keeps the user's choices under the name of the application's desktop file.
  PortalShortcuts(Bus& session, const std::string& applicationIdentifier, Listener listener);
  ~PortalShortcuts();

  /// Registers exactly these, which all have keys that the portal can name.
  void bind(std::vector<GlobalShortcuts::Shortcut> shortcuts);

private:
  void ask(const char* member, const PortalRequest::Build& build,
           void (PortalShortcuts::*granted)(sd_bus_message* results));
  void openSession();
  void closeSession();
  void sessionOpened(sd_bus_message* results);
  void bindShortcuts();
  void shortcutsBound(sd_bus_message* results);
  void refuseAll(const std::string& reason);
  void giveUp();
  void ownerChanged(bool isThere);
  void pressed(sd_bus_message* signal);

  Bus& bus_;
  Listener listener_;
  std::vector<GlobalShortcuts::Shortcut> shortcuts_;
  std::string session_;
  bool isBound_ = false;
  TokenPtr request_;
  TokenPtr activated_;
  TokenPtr closed_;
  TokenPtr owner_;
};

} // namespace tavrin
