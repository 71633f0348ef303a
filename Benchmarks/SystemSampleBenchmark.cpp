#include "TavrinPlatform/Linux/Devices/LinuxHostStatistics.h"
#include "TavrinWidgetsUI/System/Samplers/SystemReadings.h"

#include <benchmark/benchmark.h>

using namespace tavrin;

namespace {

struct OneBattery final : PowerSources {
  std::vector<PowerSource> list() override { return {{62, 100, false, false, 0, 90}}; }
  TokenPtr observe(std::function<void()>) override { return nullptr; }
};

struct Reader {
  LinuxHostStatistics host;
  OneBattery power;
  SystemReadings readings{host, power};
};

void activitySample(benchmark::State& state) {
  Reader reader;
  for (auto _ : state) {
    benchmark::DoNotOptimize(reader.readings.cpuTicks());
    benchmark::DoNotOptimize(reader.readings.memoryUsage());
  }
}
BENCHMARK(activitySample)->Unit(benchmark::kMicrosecond)->Repetitions(9)->ReportAggregatesOnly();

void networkSample(benchmark::State& state) {
  Reader reader;
  for (auto _ : state)
    benchmark::DoNotOptimize(reader.readings.networkTotals({}));
}
BENCHMARK(networkSample)->Unit(benchmark::kMicrosecond)->Repetitions(9)->ReportAggregatesOnly();

/// Asked of what the bus has told already.
void batterySample(benchmark::State& state) {
  Reader reader;
  for (auto _ : state)
    benchmark::DoNotOptimize(reader.readings.battery());
}
BENCHMARK(batterySample)->Unit(benchmark::kMicrosecond)->Repetitions(9)->ReportAggregatesOnly();

} // namespace
