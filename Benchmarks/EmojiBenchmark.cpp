#include "TavrinWidgetsUI/Emoji/EmojiModel.h"

#include <benchmark/benchmark.h>

using namespace tavrin;

namespace {

constexpr const char* usualFolder = "/usr/share/unicode";

/// All of Unicode, in two languages.
const EmojiTable& table() {
  static const EmojiTable read = EmojiSources{usualFolder, "de_DE"}.read();
  return read;
}

/// One keystroke over the whole set: at most 5 ms.
void searchEmoji(benchmark::State& state, const char* query) {
  if (table().isEmpty())
    state.SkipWithError("unicode-data is not installed");
  for (auto _ : state)
    benchmark::DoNotOptimize(table().search(query));
}
BENCHMARK_CAPTURE(searchEmoji, one_letter, "a")->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(searchEmoji, word, "heart")->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(searchEmoji, two_words, "red heart")->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(searchEmoji, nothing, "qwertz")->Unit(benchmark::kMicrosecond);

void readEmoji(benchmark::State& state) {
  for (auto _ : state)
    benchmark::DoNotOptimize(EmojiSources{usualFolder, "de_DE"}.read());
}
BENCHMARK(readEmoji)->Unit(benchmark::kMillisecond);

void drawEmoji(benchmark::State& state) {
  EmojiRasteriser rasteriser;
  if (!rasteriser.hasFont())
    state.SkipWithError("there is no colour font");
  for (auto _ : state)
    benchmark::DoNotOptimize(rasteriser.image("🦊", 54));
}
BENCHMARK(drawEmoji)->Unit(benchmark::kMicrosecond);

} // namespace
