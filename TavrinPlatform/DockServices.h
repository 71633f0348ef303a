#pragma once

#include "TavrinCore/Base/Log.h"
#include "TavrinPlatform/DockProcess.h"
#include "TavrinPlatform/FocusStatusProvider.h"
#include "TavrinPlatform/GlobalShortcuts.h"
#include "TavrinPlatform/PreferencesService.h"
#include "TavrinPlatform/RunLoop.h"

#include <functional>

namespace tavrin {

/// What the Dock's commands need of a desktop beside the common services. A member is made when it
/// is first asked for.
class DockServices {
public:
  virtual ~DockServices() = default;
  virtual DockProcess& dockProcess() = 0;
  virtual PreferencesService& preferences() = 0;
  virtual FocusStatusProvider& focusStatus() = 0;
  virtual GlobalShortcuts& globalShortcuts() = 0;
  virtual RunLoop& runLoop() = 0;
  virtual LogSink& log() = 0;
  /// Calls `started`, then serves the event loop until the user or the session asks this program
  /// to end. Threads are to be started in `started`, not before.
  virtual void runUntilStopped(const std::function<void()>& started) = 0;
};

} // namespace tavrin
