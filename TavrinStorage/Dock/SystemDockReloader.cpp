#include "TavrinStorage/Dock/SystemDockReloader.h"

#include "TavrinCore/Base/Errors.h"
#include "TavrinCore/Dock/DockError.h"
#include "TavrinCore/Text/Text.h"

#include <algorithm>

namespace tavrin {

void SystemDockReloader::waitUntilSettled() {
  const auto dock = process_.running();
  if (!dock || !dock->age || *dock->age >= settleInterval)
    return;
  // A process that seems to start in the future is no reason to wait longer.
  process_.sleep(std::min(settleInterval - *dock->age, settleInterval));
}

void SystemDockReloader::reload() {
  const auto before = process_.running();
  DockProcess::KillResult killed;
  try {
    killed = process_.killAll();
  } catch (const FileError& error) {
    throw DockError::dockReloadFailed(
        translated("failed to launch killall: {reason}", {{"reason", error.reason()}}));
  }
  if (killed.exitStatus != 0) {
    throw DockError::dockReloadFailed(
        killed.standardError
            ? translated("killall exited with {status}: {words}",
                         {{"status", killed.exitStatus}, {"words", trimmed(*killed.standardError)}})
            : translated("killall exited with {status}", {{"status", killed.exitStatus}}));
  }
  for (const double deadline = process_.uptime() + relaunchLimit; process_.uptime() < deadline;
       process_.sleep(relaunchPoll))
    if (const auto now = process_.running(); now && (!before || now->id != before->id))
      return;
  throw DockError::dockReloadFailed(translated("the Dock did not relaunch"));
}

} // namespace tavrin
