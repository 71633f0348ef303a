#pragma once

#include <optional>
#include <string>

namespace tavrin {

/// The process named "Dock" of the calling user, and the time that waiting for it takes.
class DockProcess {
public:
  struct Running {
    int id = 0;
    /// Seconds since it started; no value where that cannot be read.
    std::optional<double> age;
  };
  struct KillResult {
    int exitStatus = 0;
    /// No value where it was no UTF-8.
    std::optional<std::string> standardError;
  };

  virtual ~DockProcess() = default;
  /// The first such process by number; no value where none runs.
  virtual std::optional<Running> running() = 0;
  /// Runs "/usr/bin/killall Dock" to its end. Throws FileError with the system's reason where it
  /// cannot be started.
  virtual KillResult killAll() = 0;
  /// Seconds on a clock that never jumps.
  virtual double uptime() = 0;
  virtual void sleep(double seconds) = 0;
};

} // namespace tavrin
