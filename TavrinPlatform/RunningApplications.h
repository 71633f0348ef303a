#pragma once

#include "TavrinPlatform/FileManager.h"

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tavrin {

/// The applications of this user that run as processes of their own.
class RunningApplications {
public:
  /// A process number; only ever one that this class gave out.
  using ProcessID = int;

  struct Launch {
    std::filesystem::path program;
    std::vector<std::string> arguments;
    /// Added to this process's environment.
    std::map<std::string, std::string> environment;
    /// What the program prints is appended here.
    std::filesystem::path log;
  };

  virtual ~RunningApplications() = default;

  /// Whether applications can be told apart by their identifier here (a session bus is there).
  virtual bool knowsIdentifiers() = 0;

  /// The process that answers to a bundle identifier; no value where none does or where
  /// identifiers are unknown.
  virtual std::optional<ProcessID> processOwning(const std::string& bundleIdentifier) = 0;

  /// Makes this process the one that answers to an identifier, until it ends. Answers false where
  /// another process does, or where identifiers are unknown.
  virtual bool claimIdentifier(const std::string& bundleIdentifier) = 0;

  /// This user's processes that were started from exactly this file.
  virtual std::vector<ProcessID> processesRunning(const std::filesystem::path& program) = 0;

  /// The user's places as a process sees them, by the environment it was started with; null where
  /// that cannot be told.
  virtual std::unique_ptr<FileManager> fileManagerOf(ProcessID process) = 0;

  /// The file a process was started from; no value once it is gone.
  virtual std::optional<std::filesystem::path> programOf(ProcessID process) = 0;

  /// Starts a program that outlives this one: a session of its own, no terminal.
  /// Throws FileError where it cannot be started.
  virtual ProcessID launch(const Launch& launch) = 0;

  /// Starts several links of one program together, so that they share what they load. Each then
  /// runs as if launched alone with its arguments, which must be "--background". Their processes
  /// in the same order; 0 for one that could not be made. Throws FileError where none can.
  virtual std::vector<ProcessID> launchTogether(const std::vector<Launch>& launches) = 0;

  virtual bool isAlive(ProcessID process) = 0;

  /// Asks a process to end, or with `force` ends it.
  virtual void terminate(ProcessID process, bool force) = 0;

  /// Whether the desktop starts the application when it is asked for something.
  virtual bool canStart(const std::string& bundleIdentifier) = 0;

  /// Asks the application for one of its actions ("open" has its panel stand open, "quit" ends it),
  /// which starts it where the desktop can. Answers whether it took the request.
  bool perform(const std::string& bundleIdentifier, const std::string& action) {
    return perform(bundleIdentifier, action, std::nullopt);
  }
  /// The same with what the action is about: "edit" takes a widget's identifier.
  virtual bool perform(const std::string& bundleIdentifier, const std::string& action,
                       const std::optional<std::string>& object) = 0;
};

} // namespace tavrin
