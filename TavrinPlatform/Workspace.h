#pragma once

#include "TavrinPlatform/RunLoop.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tavrin {

struct RunningApplication {
  long processIdentifier = 0;
  std::string bundleIdentifier;
  std::string name;
  bool operator==(const RunningApplication&) const = default;
};

/// The desktop around the application.
class Workspace {
public:
  virtual ~Workspace() = default;

  /// The application the user is in; no value where the desktop does not tell.
  virtual std::optional<RunningApplication> frontmostApplication() const = 0;
  /// Opens a file or an address with what the user has for it.
  virtual void open(const std::string& target) = 0;
  /// Opens the desktop's own system monitor; false where it has none.
  virtual bool openActivityMonitor() = 0;

  /// The computer woke up; the wall clock, the time zone or the day changed.
  [[nodiscard]] virtual TokenPtr observeWake(std::function<void()> handler) = 0;
  [[nodiscard]] virtual TokenPtr observeDayChange(std::function<void()> handler) = 0;
  [[nodiscard]] virtual TokenPtr observeClockChange(std::function<void()> handler) = 0;

  /// The desktop asks programs to save energy.
  virtual bool isLowPowerMode() const = 0;
  [[nodiscard]] virtual TokenPtr observeLowPowerMode(std::function<void()> handler) = 0;

  virtual bool prefersReducedMotion() const = 0;
  virtual bool prefersDarkAppearance() const = 0;
  /// The family of the font the user chose for interfaces; no value where none is set or known yet.
  virtual std::optional<std::string> interfaceFontFamily() const = 0;
  /// How much larger than usual the user wants texts, by a size of the interface font or a scale of
  /// texts alone; 1 where nothing is said or known yet. What scales whole screens is no part of it.
  virtual double interfaceTextScale() const { return 1; }
  /// The user wants more contrast than designs have.
  virtual bool prefersHighContrast() const { return false; }
  /// One of those above changed.
  [[nodiscard]] virtual TokenPtr observeAppearance(std::function<void()> handler) = 0;
  /// What is clear of a window shows what lies under it; where nobody mixes windows it is black.
  virtual bool mixesWindows() const { return true; }
};

} // namespace tavrin
