#pragma once

#include "TavrinPlatform/FileManager.h"
#include "TavrinPlatform/Linux/Base/Bus.h"
#include "TavrinPlatform/Linux/Base/DesktopXSettings.h"
#include "TavrinPlatform/Linux/Slot/ClockWatch.h"
#include "TavrinPlatform/POSIX/HandlerList.h"
#include "TavrinPlatform/Workspace.h"

#include <map>

namespace tavrin {

/// The window manager's hints, the settings portal, logind and the power profiles. What comes
/// over a bus is asked for when first wanted and told when the answer is there; until then the
/// plain default counts. The system bus is only connected once something on it is wanted.
class LinuxWorkspace final : public Workspace {
public:
  /// What a Wayland compositor tells of the application in front.
  using Foreground = std::function<std::optional<RunningApplication>()>;
  /// `session` may be null; `system` gives the system bus, or null. `foreground` is empty where the
  /// X server knows of all windows.
  LinuxWorkspace(const FileManager& files, Bus* session, std::function<Bus*()> system,
                 Foreground foreground = {});

  std::optional<RunningApplication> frontmostApplication() const override;
  void open(const std::string& target) override;
  bool openActivityMonitor() override;
  [[nodiscard]] TokenPtr observeWake(std::function<void()> handler) override;
  [[nodiscard]] TokenPtr observeDayChange(std::function<void()> handler) override;
  [[nodiscard]] TokenPtr observeClockChange(std::function<void()> handler) override;
  bool isLowPowerMode() const override;
  [[nodiscard]] TokenPtr observeLowPowerMode(std::function<void()> handler) override;
  bool prefersReducedMotion() const override;
  bool prefersDarkAppearance() const override;
  std::optional<std::string> interfaceFontFamily() const override;
  double interfaceTextScale() const override;
  bool prefersHighContrast() const override;
  [[nodiscard]] TokenPtr observeAppearance(std::function<void()> handler) override;
  bool mixesWindows() const override;

private:
  Bus* system() const { return system_(); }
  ClockWatch& clock();
  void watchTimeZone();
  void watchPower() const;
  void watchSettings() const;
  void askPortal(const char* group, const char* key) const;
  void setPortalValue(const std::string& key, sd_bus_message* message) const;
  /// How things are to look.
  struct Look {
    bool isDark = false;
    bool isStill = false;
    bool hasHighContrast = false;
    double textScale = 1;
    std::optional<std::string> fontFamily;
    bool operator==(const Look&) const = default;
  };
  /// Taken from whoever knows best: the desktop's X settings, the portal, the toolkits' own files.
  Look readLook() const;
  /// Reads it again; whether something changed.
  bool readSettings() const;

  const FileManager& files_;
  Bus* session_;
  std::function<Bus*()> system_;
  Foreground foreground_;
  HandlerList wake_;
  HandlerList day_;
  HandlerList clockChange_;
  HandlerList lowPower_;
  HandlerList appearance_;
  std::unique_ptr<ClockWatch> clockWatch_;
  // Questions that only a query brings about.
  mutable std::map<std::string, TokenPtr> watches_;
  mutable bool isLowPower_ = false;
  mutable Look look_;
  mutable std::unique_ptr<DesktopXSettings> xsettings_;
  mutable std::optional<bool> portalDark_;
  mutable bool portalHasAnimations_ = true;
  mutable bool portalReducesMotion_ = false;
  mutable bool portalContrast_ = false;
  mutable double portalTextScale_ = 1;
  mutable std::string portalFont_;
};

} // namespace tavrin
