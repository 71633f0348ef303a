#include "TavrinWidgetsUI/System/Samplers/SystemReadings.h"

#include <algorithm>

namespace tavrin {
namespace {

bool isLoopback(std::string_view name) {
  return name.starts_with("lo");
}

} // namespace

double SystemReadings::CPUTicks::usage(const CPUTicks& earlier) const {
  const double passed = total - earlier.total;
  return passed > 0 ? std::clamp((used - earlier.used) / passed, 0.0, 1.0) : 0;
}

SystemReadings::CPUTicks SystemReadings::cpuTicks() const {
  const auto load = host_->cpuLoad();
  if (!load)
    return {};
  const double used = static_cast<double>(load->user) + static_cast<double>(load->system) +
                      static_cast<double>(load->nice);
  return {used, used + static_cast<double>(load->idle)};
}

double SystemReadings::memoryUsage() const {
  const auto load = host_->memoryLoad();
  if (!load || load->physical == 0)
    return 0;
  return std::clamp(static_cast<double>(load->used) / static_cast<double>(load->physical), 0.0,
                    1.0);
}

SystemReadings::NetworkTotals
SystemReadings::networkTotals(const std::optional<std::string>& interface) const {
  NetworkTotals totals;
  host_->eachLink([&](std::string_view name, std::uint64_t received, std::uint64_t sent) {
    if (interface ? name != *interface : isLoopback(name))
      return;
    totals.down += static_cast<double>(received);
    totals.up += static_cast<double>(sent);
  });
  return totals;
}

std::vector<std::string> SystemReadings::networkInterfaces() const {
  std::vector<std::string> names;
  host_->eachLink([&](std::string_view name, std::uint64_t, std::uint64_t) {
    if (!isLoopback(name) && std::find(names.begin(), names.end(), name) == names.end())
      names.emplace_back(name);
  });
  return names;
}

BatteryReading SystemReadings::battery() const {
  for (const auto& source : power_->list()) {
    if (!source.currentCapacity || !source.maximumCapacity || *source.maximumCapacity < 1)
      continue;
    const auto minutes = source.isOnACPower ? source.timeToFullCharge : source.timeToEmpty;
    return {static_cast<double>(*source.currentCapacity) / *source.maximumCapacity,
            source.isCharging, source.isOnACPower,
            minutes && *minutes >= 1 ? minutes : std::nullopt};
  }
  return {};
}

} // namespace tavrin
