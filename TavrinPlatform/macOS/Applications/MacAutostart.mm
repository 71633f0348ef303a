#include "TavrinPlatform/macOS/Applications/MacAutostart.h"

#include "TavrinCore/Base/Errors.h"
#include "TavrinCore/Dock/PropertyList.h"
#include "TavrinPlatform/Files/AtomicFile.h"
#include "TavrinPlatform/macOS/Base/MacText.h"

#import <ServiceManagement/ServiceManagement.h>

namespace tavrin {
namespace {

namespace fs = std::filesystem;

/// Also the agent's label, by which launchd tells agents apart.
constexpr const char* label = "dev.quellby.Tavrin.start";

/// The keys are those of launchd.plist(5).
PropertyList agentFor(const fs::path& command) {
  return PropertyList::Dictionary{
      {"Label", label},
      {"ProgramArguments", PropertyList::Array{command.string(), "start"}},
      {"RunAtLoad", true},
      // Not for a session over the network, which has no Dock.
      {"LimitLoadToSessionType", "Aqua"},
      {"ProcessType", "Interactive"}};
}

/// Bundles lie in "lib/tavrin" of an installation and in "bundles" of a build; the command lies in
/// "bin" of either.
fs::path commandFor(const fs::path& program) {
  constexpr const char* command = "tavrin";
  if (program.filename() == command)
    return program;
  const auto bundle = program.parent_path().parent_path().parent_path();
  std::error_code error;
  for (auto folder = bundle.parent_path(); folder.has_relative_path(); folder = folder.parent_path())
    if (const auto found = folder / "bin" / command; fs::exists(found, error))
      return found;
  return program.parent_path() / command;
}

bool isForbidden(const fs::path& agent) {
  @autoreleasepool {
    return [SMAppService statusForLegacyURL:toFileURL(agent)] == SMAppServiceStatusRequiresApproval;
  }
}

} // namespace

MacAutostart::MacAutostart(const fs::path& home, const fs::path& program)
    : agent_(home / "Library/LaunchAgents" / (std::string(label) + ".plist")),
      command_(commandFor(program)) {}

Autostart::Status MacAutostart::status() {
  std::error_code error;
  if (!fs::exists(agent_, error))
    return {false, true, "The widgets do not start with the session."};
  if (isForbidden(agent_))
    return {false, true,
            "The widgets do not start with the session: allow them in System Settings, under "
            "Login Items."};
  return {true, true,
          "The widgets start with the session, by the launch agent \"" + agent_.string() + "\"."};
}

Autostart::Status MacAutostart::set(bool isOn) {
  std::error_code error;
  if (isOn) {
    fs::create_directories(agent_.parent_path(), error);
    if (error)
      throw FileError(
          failure("make the folder \"" + agent_.parent_path().string() + "\"", error.message()));
    writeFileAtomically(agent_, agentFor(command_).xml());
  } else {
    fs::remove(agent_, error);
    if (error)
      throw FileError(failure("remove \"" + agent_.string() + "\"", error.message()));
  }
  return status();
}

} // namespace tavrin
