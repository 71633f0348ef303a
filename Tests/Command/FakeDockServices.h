#pragma once

#include "TavrinPlatform/DockServices.h"
#include "TavrinPlatform/Linux/Dock/FilePreferencesService.h"
#include "Tests/Support/FakeGlobalShortcuts.h"
#include "Tests/Support/FakePlatform.h"

#include <memory>
#include <utility>

namespace tavrin::test {

/// A Dock that restarts when it is told to, and a desktop without a Focus.
class FakeDockServices final : public DockServices {
public:
  explicit FakeDockServices(const FileManager& files) : files_(files) {}

  DockProcess& dockProcess() override { return process; }
  /// In the home folder of the moment it is first asked for.
  PreferencesService& preferences() override {
    if (!preferences_)
      preferences_ =
          std::make_unique<FilePreferencesService>(files_.homeFolder() / "Library/Preferences");
    return *preferences_;
  }
  FocusStatusProvider& focusStatus() override { return focus; }
  GlobalShortcuts& globalShortcuts() override { return shortcuts; }
  RunLoop& runLoop() override { return loop; }
  LogSink& log() override { return lines; }
  void runUntilStopped(const std::function<void()>& started) override {
    started();
    if (whileRunning)
      whileRunning();
  }

  struct Process final : DockProcess {
    std::optional<Running> running() override {
      return runs ? std::optional(Running{number, 100.0}) : std::nullopt;
    }
    KillResult killAll() override {
      ++kills;
      ++number;
      if (whileRestarting)
        std::exchange(whileRestarting, nullptr)();
      return {isThere ? 0 : 1, isThere ? "" : "Dock: no process found"};
    }
    double uptime() override { return time; }
    void sleep(double seconds) override { time += seconds; }
    /// Called once.
    std::function<void()> whileRestarting;
    /// Whether killall finds it.
    bool isThere = true;
    bool runs = true;
    int number = 1;
    int kills = 0;
    double time = 0;
  } process;
  struct Focus final : FocusStatusProvider {
    std::optional<bool> isFocused() override { return state; }
    bool isAuthorized() override { return true; }
    std::optional<bool> state = false;
  } focus;
  FakeGlobalShortcuts shortcuts;
  FakeLog lines;
  ManualClock time{{}};
  ManualRunLoop loop{time};
  std::function<void()> whileRunning;

private:
  const FileManager& files_;
  std::unique_ptr<FilePreferencesService> preferences_;
};

} // namespace tavrin::test
