#pragma once

#include "TavrinHost/HostError.h"
#include "TavrinPlatform/CommandPlatform.h"

#include <filesystem>
#include <set>
#include <string>
#include <string_view>

namespace tavrin {

/// What the host's library stands on, whichever program uses it: the platform, and a way to tell
/// the user something.
class HostContext {
public:
  explicit HostContext(CommandPlatform& platform) : platform_(platform) {}
  virtual ~HostContext() = default;
  HostContext(const HostContext&) = delete;
  HostContext& operator=(const HostContext&) = delete;

  CommandPlatform& platform() { return platform_; }

  /// What was done, seen at once.
  virtual void say(std::string_view line) = 0;
  /// A remark that is no result.
  virtual void remark(std::string_view line) = 0;
  /// The same, once for a context, however often the matter comes up.
  void remarkOnce(const std::string& line);

  /// Where logs and the like go; made when missing. Throws FileError.
  std::filesystem::path stateFolder();

private:
  CommandPlatform& platform_;
  std::set<std::string> remarks_;
};

/// What the one process that does `role` for this data folder goes by on the bus;
/// "dev.example.Role" and what tells the folder from others.
std::string folderIdentifier(HostContext& context, std::string_view role);

} // namespace tavrin
