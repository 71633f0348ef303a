#include "TavrinCore/Base/UUID.h"
#include "TavrinPlatform/Linux/Files/LinuxFolderWatch.h"
#include "TavrinPlatform/Qt/QtRunLoop.h"
#include "TavrinWidgetsUI/Files/FileRoll.h"
#include "TavrinWidgetsUI/Files/FileViews.h"
#include "TavrinWidgetsUI/Kit/Pictures/Thumbnail.h"
#include "TavrinWidgetsUI/Kit/Views/ViewRenderer.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QPainter>
#include <atomic>
#include <benchmark/benchmark.h>
#include <chrono>
#include <fcntl.h>
#include <fstream>
#include <map>
#include <thread>
#include <unistd.h>

using namespace tavrin;

namespace {

namespace fs = std::filesystem;
using Steady = std::chrono::steady_clock;

double since(Steady::time_point start) {
  return std::chrono::duration<double>(Steady::now() - start).count();
}

/// Of this thread.
double processorTime() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

double residentMegabytes() {
  std::ifstream statm("/proc/self/statm");
  long all = 0, resident = 0;
  statm >> all >> resident;
  return static_cast<double>(resident) * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1e6;
}

void touch(const fs::path& file) {
  ::close(::open(file.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
}

/// Names of one length, later ones later in the alphabet.
std::string nameOf(int number) {
  return "file-" + std::to_string(10'000'000 + number) + ".txt";
}

class BigFolder {
public:
  explicit BigFolder(int count)
      : path_(fs::temp_directory_path() / ("tavrin-" + UUID::random().text())) {
    fs::create_directory(path_);
    for (int i = 0; i < count; ++i)
      touch(path_ / nameOf(i));
  }
  ~BigFolder() { fs::remove_all(path_); }
  const fs::path& path() const { return path_; }

private:
  fs::path path_;
};

struct Places final : UserFiles {
  fs::path homeFolder() const override { return {}; }
  fs::path downloadsFolder() const override { return {}; }
  fs::path screenshotFolder() const override { return {}; }
  bool moveToTrash(const fs::path&) override { return false; }
  void open(const fs::path&) override {}
  void reveal(const fs::path&) override {}
};

/// The tile of the files widget over a folder, drawn as its slot does, and how long the main thread
/// was ever kept from its events.
class Tile {
public:
  explicit Tile(const fs::path& folder) : watch_(loop_), roll_(watch_, places_, loop_) {
    roll_.onChange = [this] { draw(); };
    roll_.setSettings({{folder.native()}, 20, true, std::nullopt});
  }
  /// Serves events until `condition`, and keeps the longest turn.
  bool serve(const std::function<bool()>& condition, double limit) {
    const auto start = Steady::now();
    while (!condition() && since(start) < limit) {
      const auto turn = Steady::now();
      const double used = processorTime();
      QCoreApplication::processEvents();
      longest_ = std::max(longest_, since(turn));
      longestUsed_ = std::max(longestUsed_, processorTime() - used);
      std::this_thread::sleep_for(std::chrono::microseconds(200));
    }
    return condition();
  }
  std::string newest() const {
    return roll_.files().empty() ? "" : roll_.files().front().path.filename().native();
  }
  double longest() const { return longest_; }
  /// The same in processor time, which other programs do not lengthen.
  double longestUsed() const { return longestUsed_; }
  int drawn() const { return drawn_; }

private:
  void draw() {
    FilesReading reading{true, false, roll_.unseenCount(), 0, {}, false};
    for (const FolderFile& file : roll_.files()) {
      reading.files.push_back(
          {fileSheet(file.path, false, {}), fileTitle(file.path), "now", "1 MB"});
      if (reading.files.size() == mostTileFiles)
        break;
    }
    renderer_.render(filesWideTile(reading, size_, [] {}), {size_.width(), size_.height()}, 1);
    ++drawn_;
  }

  QtRunLoop loop_;
  LinuxFolderWatch watch_;
  Places places_;
  FileRoll roll_;
  ViewRenderer renderer_;
  TileSize size_{64, 3};
  double longest_ = 0;
  double longestUsed_ = 0;
  int drawn_ = 0;
};

/// 50,000 files lie there; then one comes every millisecond for three seconds.
void folderWithAFileEveryMillisecond(benchmark::State& state) {
  constexpr int before = 50'000;
  constexpr int during = 3'000;
  const BigFolder folder(before);
  for (auto _ : state) {
    Tile tile(folder.path());
    const auto start = Steady::now();
    tile.serve([&] { return tile.newest() == nameOf(before - 1); }, 20);
    state.counters["first_ms"] = since(start) * 1000;
    const double memory = residentMegabytes();
    double mostMemory = memory;
    std::atomic<int> made = before;
    std::thread writer([&] {
      const auto begin = Steady::now();
      for (int i = 0; i < during; ++i) {
        std::this_thread::sleep_until(begin + std::chrono::milliseconds(i));
        touch(folder.path() / nameOf(before + i));
        made = before + i + 1;
      }
    });
    double oldest = 0;
    std::string shown;
    std::map<std::string, Steady::time_point> birth;
    tile.serve(
        [&] {
          const std::string last = nameOf(made - 1);
          birth.try_emplace(last, Steady::now());
          // How old the newest file was when the tile came to show it or a later one.
          if (tile.newest() != shown) {
            shown = tile.newest();
            for (auto it = birth.begin(); it != birth.end() && it->first <= shown;) {
              oldest = std::max(oldest, since(it->second));
              it = birth.erase(it);
            }
          }
          mostMemory = std::max(mostMemory, residentMegabytes());
          return tile.newest() == nameOf(before + during - 1);
        },
        30);
    writer.join();
    state.counters["main_thread_ms"] = tile.longest() * 1000;
    state.counters["main_thread_cpu_ms"] = tile.longestUsed() * 1000;
    state.counters["newest_after_ms"] = oldest * 1000;
    state.counters["memory_grown_MB"] = mostMemory - memory;
    state.counters["tiles_drawn"] = tile.drawn();
    for (int i = 0; i < during; ++i)
      ::unlink((folder.path() / nameOf(before + i)).c_str());
  }
}
BENCHMARK(folderWithAFileEveryMillisecond)->Iterations(1)->Unit(benchmark::kMillisecond);

std::string picture(const char* format, QSize size) {
  QImage image(size, QImage::Format_RGB32);
  QPainter painter(&image);
  QLinearGradient gradient(0, 0, size.width(), size.height());
  gradient.setColorAt(0, Qt::darkBlue);
  gradient.setColorAt(1, Qt::yellow);
  painter.fillRect(image.rect(), gradient);
  painter.end();
  QByteArray bytes;
  QBuffer buffer(&bytes);
  image.save(&buffer, format);
  return bytes.toStdString();
}

void thumbnailOf(benchmark::State& state, const char* format, QSize size) {
  const std::string bytes = picture(format, size);
  for (auto _ : state)
    benchmark::DoNotOptimize(thumbnail(bytes, 256));
}
BENCHMARK_CAPTURE(thumbnailOf, png_1080p, "PNG", QSize(1920, 1080))->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(thumbnailOf, png_4k, "PNG", QSize(3840, 2160))->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(thumbnailOf, jpeg_12_megapixels, "JPG", QSize(4000, 3000))
    ->Unit(benchmark::kMillisecond);

} // namespace
