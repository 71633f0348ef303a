#pragma once

#include "TavrinCore/Widgets/DockWidget.h"
#include "TavrinPlatform/Clock.h"
#include "TavrinPlatform/ConnectedDevices.h"
#include "TavrinPlatform/RunLoop.h"
#include "TavrinPlatform/Workspace.h"
#include "TavrinWidgetsUI/System/Samplers/ActivitySampler.h"
#include "TavrinWidgetsUI/System/Samplers/BatterySampler.h"
#include "TavrinWidgetsUI/System/Samplers/ClockSampler.h"
#include "TavrinWidgetsUI/System/Samplers/CountdownSampler.h"
#include "TavrinWidgetsUI/System/Samplers/NetworkSampler.h"
#include "TavrinWidgetsUI/System/Samplers/PetSampler.h"
#include "TavrinWidgetsUI/System/Samplers/StopwatchSampler.h"
#include "TavrinWidgetsUI/System/Samplers/TimeProgressSampler.h"

#include <array>
#include <functional>
#include <optional>
#include <vector>

namespace tavrin {

/// Keeps what the simple widgets show: the time widgets, and the readings of the computer. It wakes
/// when its kind's display changes next, and not at all where nothing will change by itself. What
/// that takes for each kind is its sampler's affair.
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
  ClockReading clock() const { return clockFace_.reading(now_, calendar_); }

  const BatteryReading& battery() const { return battery_.reading(); }
  const ActivityReading& activity() const { return activity_.reading(); }
  /// The readings before `activity()`, oldest first.
  const std::vector<ActivityReading>& activityHistory() const { return activity_.history(); }
  const NetworkReading& network() const { return network_.reading(); }
  /// The readings before `network()`, oldest first.
  const std::vector<NetworkReading>& networkHistory() const { return network_.history(); }
  /// Of both histories.
  static constexpr std::size_t historyLength = readingHistoryLength;
  std::vector<std::string> networkInterfaces() const { return readings_.networkInterfaces(); }
  const std::vector<DeviceBattery>& devices() const { return battery_.devices(); }
  /// Asks the connected devices anew. For the battery kind.
  void refreshDevices() { battery_.refreshDevices(); }
  /// Opens the desktop's own system monitor; false where it has none.
  bool openActivityMonitor() { return workspace_.openActivityMonitor(); }

  const PetModel& pet() const { return pet_.pet; }
  /// How many pixels the pet can walk on the tile.
  void setPetRoom(int pixels) { pet_.pet.setRoom(pixels); }
  void strokePet();

  const StopwatchRun& stopwatch() const { return stopwatch_.run; }
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
  /// Hands the settings to the sampler of their kind, and the work from now on. Whether something
  /// else is measured than before.
  bool chooseSampler();
  /// Where `now_` stands.
  SampleMoment moment() const;
  /// Takes a sample. Whether it differs from the one before.
  bool sample(Date now);
  void updateTicker();
  void tick();
  void stopwatchChanged(Date now);
  /// The clock, the zone or the locale may be another one.
  void timeJumped();
  bool isInSight() const { return showsPanel() || !isTileShown || isTileShown(); }
  bool showsPanel() const { return isPanelShown && isPanelShown(); }

  Clock& clock_;
  RunLoop& runLoop_;
  Workspace& workspace_;
  SystemReadings readings_;
  DockWidget widget_;
  Date now_;
  Calendar calendar_;
  BatterySampler battery_;
  ActivitySampler activity_;
  NetworkSampler network_;
  ClockSampler clockFace_;
  CountdownSampler countdown_;
  TimeProgressSampler timeProgress_;
  StopwatchSampler stopwatch_;
  PetSampler pet_;
  std::array<SystemSampler*, 8> samplers_{&battery_,   &activity_,     &network_,   &clockFace_,
                                          &countdown_, &timeProgress_, &stopwatch_, &pet_};
  /// The kind's; null where nothing is sampled.
  SystemSampler* sampler_ = nullptr;
  bool isStarted_ = false;
  bool savesEnergy_ = false;
  Date due_;
  TokenPtr timer_;
  std::vector<TokenPtr> observations_;
};

} // namespace tavrin
