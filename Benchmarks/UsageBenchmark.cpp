#include "TavrinCore/Kinds/ClaudeUsage/ClaudeUsage.h"
#include "TavrinStorage/ClaudeUsage/ClaudeUsageSource.h"

#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <sys/stat.h>
#include <vector>

using namespace tavrin;

namespace {

namespace fs = std::filesystem;

/// The home with logs: TAVRIN_USAGE_HOME. usage.py makes one.
fs::path home() {
  const char* path = std::getenv("TAVRIN_USAGE_HOME");
  return path != nullptr ? path : "";
}

Date now() {
  return Date::fromUnixSeconds(
      std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count());
}

constexpr double allDays = 400.0 * 86'400;

/// What the widget does once a minute.
void refresh(ClaudeUsageSource& source, Date since) {
  const Date date = now();
  const Calendar calendar;
  const auto& entries = source.entries(since);
  benchmark::DoNotOptimize(ClaudeUsage::totalsByScope(entries, date, calendar));
}

bool isMissing(benchmark::State& state) {
  if (fs::is_directory(home() / ".claude"))
    return false;
  state.SkipWithError("TAVRIN_USAGE_HOME names no home with logs");
  return true;
}

void firstRead(benchmark::State& state) {
  if (isMissing(state))
    return;
  std::uint64_t bytes = 0;
  for (auto _ : state) {
    ClaudeUsageSource source(home() / ".claude");
    refresh(source, now() - allDays);
    bytes += source.bytesRead();
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(bytes));
}
BENCHMARK(firstRead)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime()->UseRealTime();

void refreshWithNothingNew(benchmark::State& state) {
  if (isMissing(state))
    return;
  ClaudeUsageSource source(home() / ".claude");
  const Date since = now() - allDays;
  refresh(source, since);
  for (auto _ : state)
    refresh(source, since);
}
BENCHMARK(refreshWithNothingNew)
    ->Unit(benchmark::kMillisecond)
    ->MeasureProcessCPUTime()
    ->UseRealTime();

/// The least that a refresh can do: a `stat` of each log.
void statOfEach(benchmark::State& state) {
  if (isMissing(state))
    return;
  std::vector<std::string> files;
  for (const auto& entry : fs::recursive_directory_iterator(home() / ".claude"))
    if (entry.path().extension() == ".jsonl")
      files.push_back(entry.path().string());
  for (auto _ : state)
    for (const auto& file : files) {
      struct stat information {};
      benchmark::DoNotOptimize(::stat(file.c_str(), &information));
    }
}
BENCHMARK(statOfEach)
    ->Unit(benchmark::kMillisecond)
    ->MeasureProcessCPUTime()
    ->UseRealTime();

void refreshAfterAMegabyte(benchmark::State& state) {
  if (isMissing(state))
    return;
  ClaudeUsageSource source(home() / ".claude");
  const Date since = now() - allDays;
  const auto folder = home() / ".claude/projects/-bench";
  fs::create_directories(folder);
  const auto file = folder / "grown.jsonl";
  const std::string line =
      R"({"timestamp":"2026-01-02T03:04:05.250Z","requestId":"r","uuid":"u","message":{"id":"m",)"
      R"("content":")" +
      std::string(1200, 'x') + R"(","usage":{"input_tokens":1,"output_tokens":20}}})" + "\n";
  std::string megabyte;
  while (megabyte.size() < 1'000'000)
    megabyte += line;
  std::ofstream(file, std::ios::trunc) << megabyte;
  refresh(source, since);
  for (auto _ : state) {
    state.PauseTiming();
    std::ofstream(file, std::ios::app) << megabyte;
    state.ResumeTiming();
    refresh(source, since);
  }
  fs::remove_all(folder);
}
BENCHMARK(refreshAfterAMegabyte)
    ->Unit(benchmark::kMillisecond)
    ->MeasureProcessCPUTime()
    ->UseRealTime()
    ->Iterations(50);

} // namespace
