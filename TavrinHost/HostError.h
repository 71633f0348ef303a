#pragma once

#include <stdexcept>
#include <string>

namespace tavrin {

/// What the command ends with. Scripts rely on the numbers.
enum class ExitCode {
  ok = 0,
  /// Something outside the request went wrong: a file, a process, the bus.
  failed = 1,
  /// The words on the command line are no command.
  usage = 2,
  /// No widget, kind, setting or slot of that name.
  notFound = 3,
  /// More than one thing goes by that name.
  ambiguous = 4,
  /// The value is not one that this setting takes.
  refusedValue = 5,
  /// All twelve slots are taken.
  noFreeSlot = 6,
  /// The Dock layer's failures, one each.
  dockPlistNotFound = 10,
  dockPlistUnreadable = 11,
  dockPlistMalformed = 12,
  dockPlistUnwritable = 13,
  unsupportedDockItem = 14,
  dockReloadFailed = 15,
  fileNotFound = 16,
  profileNotFound = 17,
  noBackup = 18,
};

/// Ends a command. `what()` is a whole sentence for the user, without a full stop.
class HostError : public std::runtime_error {
public:
  HostError(ExitCode code, const std::string& sentence)
      : std::runtime_error(sentence), code_(code) {}

  ExitCode code() const { return code_; }

private:
  ExitCode code_;
};

} // namespace tavrin
