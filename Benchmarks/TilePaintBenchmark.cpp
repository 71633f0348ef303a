#include "TavrinWidgetsUI/Kit/Pictures/Symbols.h"
#include "TavrinWidgetsUI/Kit/Views/TileLayout.h"
#include "TavrinWidgetsUI/Kit/Views/ViewRenderer.h"

#include <QApplication>
#include <benchmark/benchmark.h>

using namespace tavrin;

namespace {

QString clockText(int seconds) {
  return QStringLiteral("%1:%2").arg(seconds / 60).arg(seconds % 60, 2, 10, QChar(u'0'));
}

TileContent runningTile(int second, const TileSize& size) {
  TileContent content;
  content.border = TileBorder{second / 1500.0, palette::red};
  content.figure = clockText(1500 - second);
  content.widestFigure = QStringLiteral("88:88");
  content.caption = QStringLiteral("Focus");
  content.mark = progressDots(2, 4, palette::red, size.body() * 0.07, size.body() * 0.05);
  content.markRatio = 0.07;
  content.isMarkBelow = true;
  return content;
}

/// Arguments: side in points, scale. Each iteration is the next second of a running timer.
void tickingTile(benchmark::State& state) {
  const TileSize size{double(state.range(0)), 1};
  ViewRenderer renderer;
  int second = 0;
  for (auto _ : state) {
    second = (second + 1) % 1500;
    benchmark::DoNotOptimize(renderer.render(tile(runningTile(second, size), size),
                                             {size.side, size.side}, double(state.range(1))));
  }
  state.counters["points"] = size.side * size.side;
}
BENCHMARK(tickingTile)->Args({48, 1})->Args({64, 2})->Args({128, 2})->Unit(benchmark::kMicrosecond);

void unchangedTile(benchmark::State& state) {
  const TileSize size{128, 1};
  ViewRenderer renderer;
  for (auto _ : state)
    benchmark::DoNotOptimize(renderer.render(tile(runningTile(60, size), size), {128, 128}, 2));
}
BENCHMARK(unchangedTile)->Unit(benchmark::kMicrosecond);

void wideTickingTile(benchmark::State& state) {
  const TileSize size{128, 3};
  ViewRenderer renderer;
  int second = 0;
  for (auto _ : state) {
    second = (second + 1) % 1500;
    WideTileContent content;
    content.border = TileBorder{second / 1500.0, palette::red};
    content.mark = symbol("timer").colour(palette::red);
    content.caption = QStringLiteral("Focus 2/4");
    content.figure = clockText(1500 - second);
    content.actions = {{{"toggle"}, "pause.fill", QStringLiteral("Pause"), true},
                       {{"skip"}, "forward.end.fill", QStringLiteral("Skip")}};
    benchmark::DoNotOptimize(
        renderer.render(wideTile(content, size), {size.width(), size.height()}, 2));
  }
  state.counters["points"] = size.width() * size.height();
}
BENCHMARK(wideTickingTile)->Unit(benchmark::kMicrosecond);

/// A tile in a process that has painted none yet, but has its fonts.
void firstTile(benchmark::State& state) {
  const TileSize size{64, 1};
  for (auto _ : state) {
    ViewRenderer renderer;
    benchmark::DoNotOptimize(renderer.render(tile(runningTile(60, size), size), {64, 64}, 1));
  }
}
BENCHMARK(firstTile)->Unit(benchmark::kMicrosecond);

void drawGearshape(benchmark::State& state) {
  QImage image(64, 64, QImage::Format_ARGB32_Premultiplied);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  for (auto _ : state)
    drawSymbol(painter, "gearshape", {0, 0, 64, 64}, palette::white);
}
BENCHMARK(drawGearshape)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
