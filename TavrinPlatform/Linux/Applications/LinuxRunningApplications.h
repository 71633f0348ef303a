#pragma once

#include "TavrinPlatform/Linux/Base/Bus.h"
#include "TavrinPlatform/RunningApplications.h"

namespace tavrin {

/// Processes as /proc lists them, identifiers as names on the session bus.
class LinuxRunningApplications final : public RunningApplications {
public:
  /// `bus` may be null.
  explicit LinuxRunningApplications(Bus* bus) : bus_(bus) {}

  bool knowsIdentifiers() override;
  std::optional<ProcessID> processOwning(const std::string& bundleIdentifier) override;
  bool claimIdentifier(const std::string& bundleIdentifier) override;
  std::vector<ProcessID> processesRunning(const std::filesystem::path& program) override;
  std::unique_ptr<FileManager> fileManagerOf(ProcessID process) override;
  std::optional<std::filesystem::path> programOf(ProcessID process) override;
  ProcessID launch(const Launch& launch) override;
  std::vector<ProcessID> launchTogether(const std::vector<Launch>& launches) override;
  bool isAlive(ProcessID process) override;
  void terminate(ProcessID process, bool force) override;
  bool canStart(const std::string& bundleIdentifier) override;
  using RunningApplications::perform;
  bool perform(const std::string& bundleIdentifier, const std::string& action,
               const std::optional<std::string>& object) override;

private:
  Bus* bus_;
};

} // namespace tavrin
