#include "TavrinCore/Base/Wipe.h"
#include "TavrinCore/Kinds/Clipboard/ClipboardBoard.h"
#include "TavrinCore/Kinds/Clipboard/ClipboardSettings.h"
#include "TavrinStorage/AESGCM.h"
#include "TavrinWidgetsUI/Clipboard/ClipboardPanelView.h"
#include "Tests/Support/FakePlatform.h"

#include <QPixmap>
#include <benchmark/benchmark.h>
#include <filesystem>

using namespace tavrin;

namespace {

/// 200 items, of which the images take 100 MB.
const ClipboardList& history() {
  static const ClipboardList list = [] {
    ClipboardList made;
    std::uint32_t state = 1;
    for (int i = 0; i < 200; ++i) {
      Data image;
      image.bytes.resize(500'000);
      for (auto& byte : image.bytes)
        byte = static_cast<std::uint8_t>((state = state * 1'664'525 + 1'013'904'223) >> 24);
      auto item = ClipboardItem::ofImage(std::move(image), 500'000);
      item.id = UUID::random();
      made.push_back(std::make_shared<const ClipboardEntry>(std::move(item)));
    }
    return made;
  }();
  return list;
}

const std::vector<std::uint8_t>& key() {
  static const std::vector<std::uint8_t> bytes(aesGCM::keyLength, 5);
  return bytes;
}

void count(benchmark::State& state, std::size_t bytes) {
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes));
}

void encodeHistory(benchmark::State& state) {
  const ClipboardList& list = history();
  std::size_t size = 0;
  for (auto _ : state)
    size = encodeClipboard(list).size();
  count(state, size);
}
BENCHMARK(encodeHistory)->Unit(benchmark::kMillisecond);

void decodeHistory(benchmark::State& state) {
  const std::string json = encodeClipboard(history());
  for (auto _ : state)
    benchmark::DoNotOptimize(decodeClipboard(json));
  count(state, json.size());
}
BENCHMARK(decodeHistory)->Unit(benchmark::kMillisecond);

void sealHistory(benchmark::State& state) {
  std::string json = encodeClipboard(history());
  const std::size_t size = json.size();
  for (auto _ : state) {
    json = aesGCM::seal(key(), std::move(json));
    json.resize(size);
  }
  count(state, size);
}
BENCHMARK(sealHistory)->Unit(benchmark::kMillisecond);

void openHistory(benchmark::State& state) {
  const std::string box = aesGCM::seal(key(), encodeClipboard(history()));
  for (auto _ : state) {
    state.PauseTiming();
    std::string copy = box;
    state.ResumeTiming();
    benchmark::DoNotOptimize(aesGCM::open(key(), std::move(copy)));
  }
  count(state, box.size());
}
BENCHMARK(openHistory)->Unit(benchmark::kMillisecond);

void saveWhole(benchmark::State& state) {
  const ClipboardList& list = history();
  for (auto _ : state)
    benchmark::DoNotOptimize(aesGCM::seal(key(), encodeClipboard(list)));
}
BENCHMARK(saveWhole)->Unit(benchmark::kMillisecond);

void readWhole(benchmark::State& state) {
  const std::string box = aesGCM::seal(key(), encodeClipboard(history()));
  for (auto _ : state) {
    state.PauseTiming();
    // With the room that reading a file leaves behind it.
    std::string copy;
    copy.reserve(box.size() + 64);
    copy = box;
    state.ResumeTiming();
    const SecretText json(aesGCM::open(key(), std::move(copy)));
    benchmark::DoNotOptimize(decodeClipboard(json.text()));
  }
}
BENCHMARK(readWhole)->Unit(benchmark::kMillisecond);

/// 10,000 texts of some 150 bytes; every fourth is not ASCII.
ClipboardList tenThousand() {
  ClipboardList list;
  for (int i = 0; i < 10'000; ++i) {
    std::string words = "The quick brown fox number " + std::to_string(i) +
                        " jumps over the lazy dog and writes down what it has seen on the way, "
                        "so that others may know the hedges";
    if (i % 4 == 0)
      words += " in Ærøskøbing, Grüße";
    auto item = ClipboardItem::ofText(words);
    item.id = UUID::random();
    item.capturedAt = {Date::fromUnixSeconds(1'788'984'522 - i * 60)};
    list.push_back(std::make_shared<const ClipboardEntry>(std::move(item)));
  }
  return list;
}

/// The argument: which query.
void search(benchmark::State& state) {
  static const char* const queries[] = {"e", "quick", "zebra", "ærø"};
  const ClipboardList list = tenThousand();
  for (auto _ : state)
    benchmark::DoNotOptimize(ClipboardBoard::search(queries[state.range(0)], list));
}
BENCHMARK(search)->DenseRange(0, 3)->Unit(benchmark::kMillisecond);

/// From nothing to a painted panel with 10,000 items.
void openPanel(benchmark::State& state) {
  test::FakePlatform platform{Date::fromUnixSeconds(1'788'984'522)};
  ClipboardSettings settings;
  settings.historyLimit = 10'000;
  const auto file =
      std::filesystem::temp_directory_path() / ("tavrin-benchmark-" + UUID::random().text());
  ClipboardVault(file, platform.fakeKeychain)
      .save(tenThousand(), settings, platform.fakeClock.now());
  LinkPreviewSource ogSource{
      {platform.loop, platform.fakeClock, [&]() -> HTTPClient& { return platform.fakeHTTP; }}};
  ClipboardSource source({platform.fakeClock, platform.loop, platform.fakePasteboard,
                          platform.fakeKeychain, platform.fakeWorkspace, ogSource},
                         file, settings);
  ClipboardModel model(DockWidget(UUID(), "Clipboard", 1, settings, 1), source);
  source.start();
  platform.loop.runBackground();
  std::filesystem::remove(file);
  if (model.items().size() != 10'000)
    state.SkipWithError("the history was not read");
  for (auto _ : state) {
    ClipboardPanelView view(
        {false, false, Qt::blue}, model,
        {platform.loop, platform.fakeClock, [](const ClipboardItem&) {}, [] {}});
    view.setAttribute(Qt::WA_DontShowOnScreen);
    view.show();
    benchmark::DoNotOptimize(view.grab());
  }
}
BENCHMARK(openPanel)->Unit(benchmark::kMillisecond);

} // namespace
