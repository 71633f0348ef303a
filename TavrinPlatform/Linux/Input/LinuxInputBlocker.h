#pragma once

#include "TavrinCore/Base/Lifetime.h"
#include "TavrinPlatform/InputBlocker.h"
#include "TavrinPlatform/Linux/Base/Bus.h"
#include "TavrinPlatform/POSIX/HandlerList.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace tavrin {

/// Holds through a guard process (see InputGuard.h), and knows of screen locks from the screen
/// savers on the session bus and from logind.
class LinuxInputBlocker final : public InputBlocker {
public:
  /// `session` may be null; `system` gives the system bus, or null.
  LinuxInputBlocker(RunLoop& runLoop, Bus* session, std::function<Bus*()> system);

  bool isPermitted() override;
  void requestPermission() override {}
  bool isSecureInputEnabled() override { return false; }
  bool isScreenLocked() override;
  [[nodiscard]] TokenPtr observeEndOfNeed(std::function<void()> handler) override;
  [[nodiscard]] TokenPtr hold(bool locksPointer, double longest, Callbacks callbacks) override;

private:
  /// Its interface, and the unique name of who speaks by it.
  using Saver = std::pair<std::string, std::string>;
  void watch();
  void watchScreenSavers();
  void watchSession(Bus& system);
  void setSessionLocked(bool isLocked);
  void setSaverActive(const Saver& saver, bool isActive);
  void forget(const Saver& saver);

  RunLoop& runLoop_;
  Bus* session_;
  std::function<Bus*()> system_;
  HandlerList endOfNeed_;
  bool isWatching_ = false;
  /// Each with the watch for its end.
  std::map<Saver, TokenPtr> activeSavers_;
  bool sessionLocks_ = false;
  std::string sessionPath_;
  std::vector<TokenPtr> watches_;
  Lifetime alive_;
};

} // namespace tavrin
