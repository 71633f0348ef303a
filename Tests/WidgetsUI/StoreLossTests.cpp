#include "TavrinCore/Kinds/Note/NoteSettings.h"
#include "TavrinPlatform/POSIX/JSONUserDefaults.h"
#include "TavrinStorage/ColourStore.h"
#include "TavrinStorage/Dock/PlistFileBackend.h"
#include "TavrinStorage/Dock/ProfileStore.h"
#include "TavrinStorage/EmojiStore.h"
#include "TavrinStorage/WaterStore.h"
#include "TavrinStorage/WeatherCache.h"
#include "TavrinStorage/WidgetStore.h"
#include "TavrinWidgetsUI/Clipboard/ClipboardVault.h"
#include "Tests/Storage/ChildProcess.h"
#include "Tests/Storage/Posts.h"
#include "Tests/Storage/TemporaryFolder.h"
#include "Tests/Support/FakeClipboard.h"
#include "Tests/Support/ManualRunLoop.h"

#include <chrono>
#include <ctime>
#include <gtest/gtest.h>
#include <random>

/// Every store that keeps a file of its own: what is left when its writer is killed, and what it
/// makes of each piece of its file.
namespace tavrin {
namespace {

namespace fs = std::filesystem;

/// Texts of which a mixture of two generations shows. Small ones for the first few.
std::size_t lengthOf(int generation) {
  return static_cast<std::size_t>(generation < 10 ? generation * 10 : generation * 7919 % 40'000);
}
std::string textOf(int generation) {
  return std::to_string(generation) + ":" + std::string(lengthOf(generation), 'x');
}
int generationOf(const std::string& text) {
  const int generation = std::stoi(text);
  if (text != textOf(generation))
    throw std::logic_error("a mixture of generations");
  return generation;
}
/// Of a list with the newest generation first.
template <class Items, class Number>
int generationOfList(const Items& items, std::size_t most, const Number& number) {
  const int newest = items.empty() ? 0 : number(items.front());
  if (items.size() != std::min(static_cast<std::size_t>(newest), most))
    throw std::logic_error("not as many as there were");
  for (std::size_t i = 0; i < items.size(); ++i)
    if (number(items[i]) != newest - static_cast<int>(i))
      throw std::logic_error("a mixture of generations");
  return newest;
}

struct Silence final : LogSink {
  void write(LogLevel, std::string_view, std::string_view, std::string_view) override {}
};

const Date noon{800'000'000};

/// What a piece of the file is.
enum class Piece { refused, nothing, putAside };

struct StoreCase {
  const char* name;
  Piece piece;
  /// Opens the store over a file; what comes back saves a generation, each one after the one
  /// before.
  std::function<std::function<void(int)>(const fs::path&)> open;
  /// The generation in the file. Throws for what is refused or not whole; none for nothing.
  std::function<std::optional<int>(const fs::path&)> read;
};

StoreCase widgets() {
  return {"Widgets", Piece::refused,
          [](const fs::path& file) {
            auto store = std::make_shared<WidgetStore>(file);
            if (store->file().widgets.empty())
              store->create("w", NoteSettings{});
            return [store](int generation) {
              auto widget = store->file().widgets.front();
              widget.name = std::to_string(generation);
              NoteSettings note;
              note.text = textOf(generation);
              widget.kind = std::move(note);
              store->update(widget);
            };
          },
          [](const fs::path& file) -> std::optional<int> {
            const WidgetStore store(file);
            const auto& widget = store.file().widgets.at(0);
            const auto* note = widget.kind.get<NoteSettings>();
            // Before the first generation a widget stands there that has none.
            if (note == nullptr || note->text.empty())
              return std::nullopt;
            if (widget.name != std::to_string(generationOf(note->text)))
              throw std::logic_error("a mixture of generations");
            return generationOf(note->text);
          }};
}

StoreCase profiles() {
  return {"Profiles", Piece::refused,
          [](const fs::path& file) {
            auto store = std::make_shared<ProfileStore>(file);
            if (store->file().profiles.empty()) {
              Profile first;
              first.name = textOf(0);
              store->create(std::move(first));
            }
            return [store](int generation) {
              store->change(store->file().profiles.front().id,
                            [&](Profile& profile) { profile.name = textOf(generation); });
            };
          },
          [](const fs::path& file) -> std::optional<int> {
            return generationOf(ProfileStore(file).file().profiles.at(0).name);
          }};
}

Posts& posts() {
  static Posts posts;
  return posts;
}

StoreCase colours() {
  return {"Colours", Piece::refused,
          [](const fs::path& file) {
            auto store = std::make_shared<ColourStore>(file, posts());
            return [store](int generation) {
              PickedColour colour;
              colour.red = generation >> 16;
              colour.green = generation >> 8 & 0xFF;
              colour.blue = generation & 0xFF;
              store->add(colour, ColourHistory::mostLimit);
            };
          },
          [](const fs::path& file) -> std::optional<int> {
            const ColourStore store(file, posts());
            return generationOfList(store.history().colours, ColourHistory::mostLimit,
                                    [](const PickedColour& colour) { return colour.packed(); });
          }};
}

StoreCase emoji() {
  return {"Emoji", Piece::refused,
          [](const fs::path& file) {
            auto store = std::make_shared<EmojiStore>(file, posts());
            return [store](int generation) {
              store->add({std::to_string(generation), {}}, EmojiHistory::mostLimit);
            };
          },
          [](const fs::path& file) -> std::optional<int> {
            const EmojiStore store(file, posts());
            return generationOfList(store.history().recents, EmojiHistory::mostLimit,
                                    [](const Emoji& each) { return std::stoi(each.text); });
          }};
}

StoreCase water() {
  return {"Water", Piece::refused,
          [](const fs::path& file) {
            auto store = std::make_shared<WaterStore>(file, posts());
            return [store](int) { store->add(1, noon); };
          },
          [](const fs::path& file) -> std::optional<int> {
            return WaterStore(file, posts()).log().total(noon, Calendar());
          }};
}

test::FakeKeychain& keychain() {
  static test::FakeKeychain keychain;
  // Before any process is forked: all have the same key.
  if (keychain.secrets.empty())
    ClipboardCrypto(keychain).seal("x");
  return keychain;
}

StoreCase clipboard() {
  return {"Clipboard", Piece::refused,
          [](const fs::path& file) {
            auto vault = std::make_shared<ClipboardVault>(file, keychain());
            return [vault](int generation) {
              auto item = ClipboardItem::ofText(textOf(generation));
              item.capturedAt = {noon};
              if (vault->save({std::make_shared<const ClipboardEntry>(std::move(item))}, {}, noon)
                      .trouble)
                throw std::runtime_error("not saved");
            };
          },
          [](const fs::path& file) -> std::optional<int> {
            const auto outcome = ClipboardVault(file, keychain()).read();
            if (outcome.trouble)
              throw std::runtime_error(outcome.trouble->text);
            if (outcome.stored->size() != 1)
              throw std::logic_error("not one item");
            return generationOf(outcome.stored->front()->item.text.value());
          }};
}

StoreCase weather() {
  return {"Weather", Piece::nothing,
          [](const fs::path& file) {
            return [cache = WeatherCache(file)](int generation) {
              CachedWeather weather;
              weather.region = textOf(generation);
              cache.write(weather);
            };
          },
          [](const fs::path& file) -> std::optional<int> {
            const auto cached = WeatherCache(file).read();
            return cached ? std::optional(generationOf(cached->region.value())) : std::nullopt;
          }};
}

Silence& silence() {
  static Silence silence;
  return silence;
}

test::ManualRunLoop& loop() {
  static test::ManualClock clock(Date{});
  static test::ManualRunLoop loop(clock);
  return loop;
}

StoreCase defaults() {
  return {"Defaults", Piece::putAside,
          [](const fs::path& file) {
            auto store = std::make_shared<JSONUserDefaults>(file, silence(), loop());
            return [store](int generation) { store->set("timerRun", textOf(generation)); };
          },
          [](const fs::path& file) -> std::optional<int> {
            const auto value = JSONUserDefaults(file, silence(), loop()).value("timerRun");
            return value ? std::optional(generationOf(*value->string())) : std::nullopt;
          }};
}

StoreCase dock() {
  return {"Dock", Piece::refused,
          [](const fs::path& file) {
            return [file](int generation) {
              PlistFileBackend(file).writeTiles({{{{"label", textOf(generation)}}}, {}});
            };
          },
          [](const fs::path& file) -> std::optional<int> {
            const auto tiles = PlistFileBackend(file).readTiles();
            return generationOf(*tiles.apps.at(0).at("label").string());
          }};
}

class StoreLoss : public testing::TestWithParam<StoreCase> {
protected:
  StoreLoss() { keychain(); }
  TemporaryFolder folder_;
  const fs::path file_ = folder_ / "store";
};

void sleepMicroseconds(long microseconds) {
  timespec pause{microseconds / 1'000'000, microseconds % 1'000'000 * 1000};
  ::nanosleep(&pause, nullptr);
}

/// TAVRIN_KILL_ROUNDS sets the number of rounds.
TEST_P(StoreLoss, AKilledWriterLeavesAWholeFile) {
  const char* wanted = std::getenv("TAVRIN_KILL_ROUNDS");
  const int rounds = wanted != nullptr ? std::atoi(wanted) : 200;
  std::mt19937 random(20'260'310);
  std::uniform_int_distribution<long> moment(0, 4000);
  int generation = 0;
  for (int round = 0; round < rounds; ++round) {
    ChildProcess writer([&](const ChildProcess::Ready& ready) {
      const auto save = GetParam().open(file_);
      for (int next = generation + 1;; ++next) {
        save(next);
        if (next == generation + 1)
          ready();
      }
    });
    ASSERT_TRUE(writer.isReady()) << "the writer failed by itself in round " << round;
    sleepMicroseconds(moment(random));
    writer.kill();
    ASSERT_LT(writer.exitStatus(), 0) << "the writer failed by itself in round " << round;
    const auto found = GetParam().read(file_);
    ASSERT_TRUE(found) << "round " << round;
    ASSERT_GT(*found, generation) << "what was said to be saved is lost in round " << round;
    generation = *found;
  }
  std::printf("%d rounds, %d generations\n", rounds, generation);
}

TEST_P(StoreLoss, APieceOfTheFileIsNeverTakenForTheWhole) {
  const auto save = GetParam().open(file_);
  for (int generation = 1; generation <= 3; ++generation)
    save(generation);
  const std::string whole = contents(file_);
  ASSERT_GT(whole.size(), 40U);
  std::size_t refused = 0;
  for (std::size_t length = 0; length < whole.size(); ++length) {
    const std::string piece = whole.substr(0, length);
    put(file_, piece);
    std::optional<int> found;
    bool isRefused = false;
    try {
      found = GetParam().read(file_);
    } catch (const std::logic_error& error) {
      FAIL() << error.what() << " at " << length;
    } catch (const std::runtime_error&) {
      isRefused = true;
    }
    // What is left away at the end may be white space.
    if (found) {
      ASSERT_EQ(found, 3) << length;
      ASSERT_GE(length + 2, whole.size());
      continue;
    }
    ++refused;
    ASSERT_EQ(isRefused, GetParam().piece == Piece::refused) << length;
    if (GetParam().piece == Piece::putAside) {
      ASSERT_FALSE(fs::exists(file_)) << length;
      ASSERT_EQ(contents(file_.string() + ".damaged"), piece) << length;
    } else {
      ASSERT_EQ(contents(file_), piece) << "left as it was, " << length;
    }
  }
  EXPECT_GE(refused + 2, whole.size());
}

INSTANTIATE_TEST_SUITE_P(Stores, StoreLoss,
                         testing::Values(widgets(), profiles(), colours(), emoji(), water(),
                                         clipboard(), weather(), defaults(), dock()),
                         [](const auto& info) { return std::string(info.param.name); });

} // namespace
} // namespace tavrin
