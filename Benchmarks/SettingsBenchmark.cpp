#include "TavrinCore/Kinds/Note/NoteSettings.h"
#include "TavrinSettings/Form/WidgetForm.h"
#include "TavrinSettings/Samples/SampleTiles.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelStyle.h"
#include "TavrinWidgetsUI/Kit/Views/ViewRenderer.h"

#include <QApplication>
#include <QPainter>
#include <benchmark/benchmark.h>

namespace tavrin {
namespace {

/// Nothing here waits for time to pass.
class StillRunLoop final : public RunLoop {
public:
  TokenPtr repeat(double, std::function<void()>) override { return nullptr; }
  TokenPtr after(double, std::function<void()>) override { return nullptr; }
  void post(std::function<void()> work) override { work(); }
  void background(std::function<void()>, std::weak_ptr<void>, std::function<void()>) override {}
  std::unique_ptr<SerialQueue> makeSerialQueue() override { return nullptr; }
};

QApplication& application() {
  static int count = 1;
  static char name[] = "bench";
  static char* words[] = {name, nullptr};
  qputenv("QT_QPA_PLATFORM", "offscreen");
  static QApplication made(count, words);
  return made;
}

constexpr Date now = Date::fromUnixSeconds(1'788'984'522);

DockWidget widgetOf(std::int64_t index) {
  const auto& kind = allKinds()[static_cast<std::size_t>(index)];
  return {UUID::random(), std::string(kind.title), 1, *freshKind(kind.key, now), 1};
}

/// A form of each kind, made, laid out and painted.
void formOfKind(benchmark::State& state) {
  application();
  PanelStyle::install();
  FormServices services;
  services.now = [] { return now; };
  const auto widget = widgetOf(state.range(0));
  state.SetLabel(std::string(widget.kind.key()));
  for (auto unused : state) {
    WidgetForm form(services, {});
    form.show(widget);
    form.resize(520, form.sizeHint().height());
    benchmark::DoNotOptimize(form.grab());
  }
}
BENCHMARK(formOfKind)->DenseRange(0, 30)->Unit(benchmark::kMillisecond)->Iterations(5);

/// A tile of the strip and the two of a preview, drawn from another record: what a keystroke costs
/// beside the file that is written.
void tilesAfterAKeystroke(benchmark::State& state) {
  application();
  StillRunLoop loop;
  SampleTiles tiles(loop);
  ViewPainter painter;
  QImage image(800, 400, QImage::Format_ARGB32_Premultiplied);
  DockWidget note({}, "Note", 1, NoteSettings(), 1);
  int letter = 0;
  for (auto unused : state) {
    note.kind.get<NoteSettings>()->text = std::string(static_cast<std::size_t>(++letter % 40), 'a');
    QPainter target(&image);
    for (const auto& size : {TileSize{64, 1}, TileSize{112, 1}, TileSize{72, 2}})
      painter.paint(target, tiles.tile(note, size, now), QRectF(0, 0, size.width(), size.height()),
                    1);
  }
}
BENCHMARK(tilesAfterAKeystroke)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace tavrin
