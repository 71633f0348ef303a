#pragma once

#include "TavrinCore/Base/Calendar.h"
#include "TavrinCore/Kinds/Runs/StopwatchRun.h"
#include "TavrinCore/Widgets/DockWidget.h"
#include "TavrinPlatform/Clock.h"
#include "TavrinPlatform/ConnectedDevices.h"
#include "TavrinPlatform/RunLoop.h"
#include "TavrinPlatform/Workspace.h"
#include "TavrinWidgetsUI/System/ClockReading.h"
#include "TavrinWidgetsUI/System/PetModel.h"
#include "TavrinWidgetsUI/System/SystemReadings.h"

#include <functional>
#include <optional>
#include <vector>

namespace tavrin {

/// Keeps what the simple widgets show: the time widgets, and the readings of the computer. It wakes
/// when its kind's display changes next, and not at all where nothing will change by itself.
class SystemWidgetModel {
public:
  /// What it is given by reference outlives it.
  struct Services {
    Clock& clock;
    RunLoop& runLoop;
    Workspace& workspace;
    HostStatistics& host;
    PowerSources& power;
    ConnectedDevices& devices;
  };
  SystemWidgetModel(const Services& services, DockWidget widget, StopwatchRun stopwatch = {});
  SystemWidgetModel(const SystemWidgetModel&) = delete;
  SystemWidgetModel& operator=(const SystemWidgetModel&) = delete;

  void start();
  void stop();

  const DockWidget& widget() const { return widget_; }
  /// Other settings, or another kind of the group. Does not call `onChange`.
  void setWidget(const DockWidget& widget);

  /// The time of the last sample.
  Date now() const { return now_; }
  /// The system's zone and the user's locale.
  const Calendar& calendar() const { return calendar_; }
  /// What a clock shows now. For the clock kind only.
  ClockReading clock() const;

  const BatteryReading& battery() const { return battery_; }
  const ActivityReading& activity() const { return activity_; }
  /// The readings before `activity()`, oldest first.
  const std::vector<ActivityReading>& activityHistory() const { return activityHistory_; }
  const NetworkReading& network() const { return network_; }
  /// The readings before `network()`, oldest first.
  const std::vector<NetworkReading>& networkHistory() const { return networkHistory_; }
  /// Of both histories.
  static constexpr std::size_t historyLength = 30;
  std::vector<std::string> networkInterfaces() const { return readings_.networkInterfaces(); }
  const std::vector<DeviceBattery>& devices() const { return devices_; }
  /// Asks the connected devices anew. For the battery kind.
  void refreshDevices();
  /// Opens the desktop's own system monitor; false where it has none.
  bool openActivityMonitor() { return workspace_.openActivityMonitor(); }

  const PetModel& pet() const { return pet_; }
  /// How many pixels the pet can walk on the tile.
  void setPetRoom(int pixels) { pet_.setRoom(pixels); }
  void strokePet();

  const StopwatchRun& stopwatch() const { return stopwatch_; }
  /// Another widget's run. Does not call `onStopwatchChange`.
  void setStopwatch(const StopwatchRun& run);
  void toggleStopwatch();
  void lapStopwatch();
  void resetStopwatch();

  /// Seconds between two samples; for countdowns the shortest there is.
  double interval() const;
  /// Nothing is sampled more often than every 3 seconds. Follows the desktop's power saving.
  bool savesEnergy() const { return savesEnergy_; }
  void setSavesEnergy(bool savesEnergy);

  /// The panel opened or closed: an open one shows more than the tile has room for.
  void panelChanged();
  std::function<bool()> isPanelShown;
  /// The tile came into sight or went out of it, or the user wants more or less motion. For the
  /// pet, which moves while somebody can see it.
  void sightChanged();
  std::function<bool()> isTileShown;

  /// What is shown differs now.
  std::function<void()> onChange;
  /// The run changed and is to be kept.
  std::function<void()> onStopwatchChange;
  /// `devices()` differs now.
  std::function<void()> onDevicesChange;

private:
  struct NetworkBaseline {
    SystemReadings::NetworkTotals totals;
    Date date;
  };
  struct Sampling;
  static const Sampling* sampling(const DockWidget::Kind& kind);
  static std::optional<Date> nextCountdownChange(const SystemWidgetModel& model);

  void watchPowerSources();
  void devicesChanged();
  bool readActivity();
  bool readNetwork();
  bool readPet();
  /// Takes a sample. Whether it differs from the one before.
  bool sample(Date now);
  void updateTicker();
  void tick();
  void stopwatchChanged(Date now);
  /// The clock, the zone or the locale may be another one.
  void timeJumped();
  bool isInSight() const { return showsPanel() || !isTileShown || isTileShown(); }
  bool showsPanel() const { return isPanelShown && isPanelShown(); }
  double paced(double interval) const;

  Clock& clock_;
  RunLoop& runLoop_;
  Workspace& workspace_;
  SystemReadings readings_;
  ConnectedDevices& connectedDevices_;
  DockWidget widget_;
  Date now_;
  Calendar calendar_;
  mutable std::optional<ClockReader> clockReader_;
  StopwatchRun stopwatch_;
  PetModel pet_;
  BatteryReading battery_;
  ActivityReading activity_;
  NetworkReading network_;
  std::vector<ActivityReading> activityHistory_;
  std::vector<NetworkReading> networkHistory_;
  std::vector<DeviceBattery> devices_;
  std::optional<SystemReadings::CPUTicks> lastTicks_;
  std::optional<NetworkBaseline> lastNetwork_;
  bool isStarted_ = false;
  bool savesEnergy_ = false;
  Date due_;
  TokenPtr timer_;
  std::vector<TokenPtr> observations_;
  std::vector<TokenPtr> powerSourceWatch_;
};

} // namespace tavrin
