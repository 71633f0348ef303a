#pragma once

#include "TavrinPlatform/DockServices.h"
#include "TavrinPlatform/macOS/Desktop/MacLogSink.h"
#include "TavrinPlatform/macOS/Dock/MacDockProcess.h"
#include "TavrinPlatform/macOS/Dock/MacPreferencesService.h"

#include <functional>
#include <memory>

namespace tavrin {

/// `eventLoop` starts the program's event loop where it is not there yet and gives it.
class MacDockServices final : public DockServices {
public:
  explicit MacDockServices(std::function<RunLoop&()> eventLoop)
      : eventLoop_(std::move(eventLoop)) {}

  DockProcess& dockProcess() override { return dockProcess_; }
  PreferencesService& preferences() override { return preferences_; }
  FocusStatusProvider& focusStatus() override;
  GlobalShortcuts& globalShortcuts() override;
  RunLoop& runLoop() override { return eventLoop_(); }
  LogSink& log() override { return log_; }
  void runUntilStopped(const std::function<void()>& started) override;

private:
  MacDockProcess dockProcess_;
  MacPreferencesService preferences_;
  MacLogSink log_;
  std::function<RunLoop&()> eventLoop_;
  std::unique_ptr<FocusStatusProvider> focusStatus_;
  std::unique_ptr<GlobalShortcuts> shortcuts_;
};

} // namespace tavrin
