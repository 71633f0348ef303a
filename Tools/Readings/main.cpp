// Tells what the system readings say, once for each line on its standard input: the processors'
// use since the line before and the memory's, as fractions, then the bytes per second that a link
// received and sent since the line before.
//
//   readings LINK
#include "TavrinPlatform/Linux/Devices/LinuxHostStatistics.h"
#include "TavrinWidgetsUI/System/Samplers/SystemReadings.h"

#include <chrono>
#include <cstdio>

namespace {

using Clock = std::chrono::steady_clock;

struct NoPower final : tavrin::PowerSources {
  std::vector<tavrin::PowerSource> list() override { return {}; }
  tavrin::TokenPtr observe(std::function<void()>) override { return nullptr; }
};

} // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: readings LINK\n", stderr);
    return 2;
  }
  tavrin::LinuxHostStatistics host;
  NoPower power;
  const tavrin::SystemReadings readings(host, power);
  auto ticks = readings.cpuTicks();
  auto totals = readings.networkTotals(argv[1]);
  auto moment = Clock::now();
  for (int c = std::getchar(); c != EOF; c = std::getchar()) {
    if (c != '\n')
      continue;
    const auto nextTicks = readings.cpuTicks();
    const auto nextTotals = readings.networkTotals(argv[1]);
    const auto now = Clock::now();
    const double seconds = std::chrono::duration<double>(now - moment).count();
    std::printf("%.6f %.6f %.0f %.0f\n", nextTicks.usage(ticks), readings.memoryUsage(),
                (nextTotals.down - totals.down) / seconds, (nextTotals.up - totals.up) / seconds);
    std::fflush(stdout);
    ticks = nextTicks;
    totals = nextTotals;
    moment = now;
  }
  return 0;
}
