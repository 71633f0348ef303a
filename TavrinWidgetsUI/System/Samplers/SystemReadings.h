#pragma once

#include "TavrinPlatform/HostStatistics.h"
#include "TavrinPlatform/PowerSources.h"

#include <optional>
#include <string>
#include <vector>

namespace tavrin {

struct BatteryReading {
  /// A fraction of the full capacity; none without a battery.
  std::optional<double> level = {};
  bool isCharging = false;
  bool isPluggedIn = false;
  /// To full while plugged in, to empty otherwise; none while unknown.
  std::optional<int> minutesRemaining = {};
  bool operator==(const BatteryReading&) const = default;
};

/// Fractions 0...1.
struct ActivityReading {
  double cpu = 0;
  double memory = 0;
  bool operator==(const ActivityReading&) const = default;
};

/// Bytes per second.
struct NetworkReading {
  double down = 0;
  double up = 0;
  bool operator==(const NetworkReading&) const = default;
};

/// Readings of the computer. Nothing is kept, nothing throws: what cannot be read is 0, or empty.
class SystemReadings {
public:
  struct CPUTicks {
    double used = 0;
    double total = 0;
    /// The share of use 0...1 between the two; 0 where no tick passed.
    double usage(const CPUTicks& earlier) const;
    bool operator==(const CPUTicks&) const = default;
  };
  /// Bytes since the links came up.
  struct NetworkTotals {
    double down = 0;
    double up = 0;
    bool operator==(const NetworkTotals&) const = default;
  };

  /// Both outlive the reader.
  SystemReadings(HostStatistics& host, PowerSources& power) : host_(&host), power_(&power) {}

  CPUTicks cpuTicks() const;
  double memoryUsage() const;
  /// Of the link of exactly that name, or of all but loopbacks.
  NetworkTotals networkTotals(const std::optional<std::string>& interface) const;
  /// The links one can choose from.
  std::vector<std::string> networkInterfaces() const;
  BatteryReading battery() const;
  PowerSources& powerSources() const { return *power_; }

private:
  HostStatistics* host_;
  PowerSources* power_;
};

} // namespace tavrin
