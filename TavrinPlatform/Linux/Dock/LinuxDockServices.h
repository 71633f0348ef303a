#pragma once

#include "TavrinPlatform/DockServices.h"
#include "TavrinPlatform/Linux/Base/Bus.h"
#include "TavrinPlatform/Linux/Desktop/LinuxFocusStatusProvider.h"
#include "TavrinPlatform/Linux/Dock/FilePreferencesService.h"
#include "TavrinPlatform/Linux/Dock/LinuxDockProcess.h"
#include "TavrinPlatform/Linux/Slot/LinuxSystemLog.h"

#include <functional>

namespace tavrin {

/// `eventLoop` starts the program's event loop where it is not there yet and gives it; `bus` gives
/// the session bus or null.
class LinuxDockServices final : public DockServices {
public:
  LinuxDockServices(const std::filesystem::path& homeFolder, std::function<RunLoop&()> eventLoop,
                    std::function<Bus*()> bus)
      : preferences_(homeFolder / "Library" / "Preferences"), eventLoop_(std::move(eventLoop)),
        bus_(std::move(bus)) {}

  DockProcess& dockProcess() override { return dockProcess_; }
  PreferencesService& preferences() override { return preferences_; }
  FocusStatusProvider& focusStatus() override { return focusStatus_; }
  GlobalShortcuts& globalShortcuts() override;
  RunLoop& runLoop() override { return eventLoop_(); }
  LogSink& log() override;
  void runUntilStopped(const std::function<void()>& started) override;

private:
  LinuxDockProcess dockProcess_;
  FilePreferencesService preferences_;
  LinuxFocusStatusProvider focusStatus_;
  std::function<RunLoop&()> eventLoop_;
  std::function<Bus*()> bus_;
  std::unique_ptr<LinuxSystemLog> log_;
  std::unique_ptr<GlobalShortcuts> shortcuts_;
};

} // namespace tavrin
