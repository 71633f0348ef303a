#include "TavrinCore/Base/Errors.h"
#include "TavrinCore/Kinds/Note/NoteSettings.h"
#include "TavrinCore/Kinds/System/ClockSettings.h"
#include "TavrinStorage/ColourStore.h"
#include "TavrinStorage/Dock/PlistFileBackend.h"
#include "TavrinStorage/Dock/ProfileStore.h"
#include "TavrinStorage/WaterStore.h"
#include "TavrinStorage/WidgetStore.h"
#include "Tests/Storage/ChildProcess.h"
#include "Tests/Storage/Posts.h"
#include "Tests/Storage/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace tavrin {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;

struct Mark {
  int first = 0;
  int second = 0;

  static constexpr auto fields() {
    return std::tuple{optional("first", &Mark::first), optional("second", &Mark::second)};
  }
  bool operator==(const Mark&) const = default;
};

class SharedDocumentTest : public testing::Test {
protected:
  const TemporaryFolder folder_;
  const fs::path file_ = folder_ / "a.json";
  SharedDocument<Mark> document_{file_};
};

TEST_F(SharedDocumentTest, AChangeIsMadeInTheFileAsItIs) {
  SharedDocument<Mark> other(file_);
  document_.change([](Mark& mark) { mark.first = 1; });
  other.change([](Mark& mark) { mark.second = 2; });
  document_.change([](Mark& mark) { mark.first += 10; });
  EXPECT_EQ(document_.value(), (Mark{11, 2}));
  EXPECT_THAT(folder_.names(), ElementsAre("a.json"));
}

TEST_F(SharedDocumentTest, WhoWritesWithoutTheLockIsNotWrittenOver) {
  int runs = 0;
  document_.change([&](Mark& mark) {
    if (++runs <= 3)
      writeJSONFile(file_, encode(Mark{100 + runs, 0}));
    mark.second = 5;
  });
  EXPECT_EQ(runs, 4);
  document_.reload();
  EXPECT_EQ(document_.value(), (Mark{103, 5}));
  const auto always = [&](Mark& mark) {
    writeJSONFile(file_, encode(Mark{++runs, 0}));
    mark.second = 6;
  };
  EXPECT_EQ(errorOf<FileError>([&] { document_.change(always); }),
            "Failed to change " + file_.string() + " because others keep changing it");
}

TEST_F(SharedDocumentTest, ChangesWithinAChangeAreOne) {
  document_.change([](Mark& mark) { mark.first = 1; });
  const auto before = contents(file_);
  const auto failing = [&](Mark&) {
    document_.change([](Mark& mark) { mark.second = 2; });
    EXPECT_EQ(contents(file_), before);
    throw std::runtime_error("no");
  };
  EXPECT_THROW(document_.change(failing), std::runtime_error);
  EXPECT_EQ(contents(file_), before);
  EXPECT_EQ(document_.value(), (Mark{1, 0}));
  EXPECT_TRUE(document_.change([&](Mark&) {
    document_.change([](Mark& mark) { mark.second = 3; });
    return false;
  }));
  EXPECT_FALSE(document_.change([](Mark&) { return false; }));
  document_.reload();
  EXPECT_EQ(document_.value(), (Mark{1, 3}));
}

TEST(SharedFiles, RecordsOfAStoreMayBeGivenBackToIt) {
  const TemporaryFolder folder;
  WidgetStore widgets(folder / "widgets.json");
  ProfileStore profiles(folder / "profiles.json");
  for (int i = 0; i < 3; ++i) {
    widgets.create("w", ClockSettings{});
    Profile profile;
    profile.id = UUID::random();
    profiles.create(profile);
  }
  widgets.update(widgets.file().widgets[2]);
  EXPECT_TRUE(widgets.claimSlot(widgets.file().widgets[2].id));
  widgets.remove(widgets.file().widgets[2].id);
  profiles.update(profiles.file().profiles[2]);
  profiles.change(profiles.file().profiles[2].id, [](Profile& profile) { profile.name = "n"; });
  profiles.activate(profiles.file().profiles[2].id);
  profiles.remove(profiles.file().profiles[2].id);
  EXPECT_EQ(widgets.file().widgets.size(), 2U);
  EXPECT_EQ(profiles.file().profiles.size(), 2U);
  EXPECT_FALSE(profiles.file().activeProfileId);
}

TEST(SharedFiles, APourThatWasNotWrittenWasNotDrunk) {
  const TemporaryFolder folder;
  Posts posts;
  fs::create_directory(folder / "data");
  WaterStore store(folder / "data/water.json", posts);
  fs::remove(folder / "data");
  const Date now{700'000'000};
  EXPECT_THROW(store.add(250, now), FileError);
  EXPECT_EQ(store.log(), WaterLog{});
  fs::create_directory(folder / "data");
  store.add(100, now);
  EXPECT_EQ(store.log().total(now, Calendar()), 100);
  EXPECT_EQ(posts.names.size(), 1U);
}

/// What each of several processes wrote, while the others did, through the stores of one folder.
TEST(SharedFiles, NothingThatWasWrittenIsLost) {
  constexpr int processes = 4;
  constexpr int rounds = 12;
  const TemporaryFolder folder;
  const Date noon{700'000'000};
  const UUID shared = WidgetStore(folder / "widgets.json").create("w", NoteSettings{}).id;
  put(folder / "dock.plist", "<plist><dict/></plist>");
  std::vector<std::unique_ptr<ChildProcess>> children;
  for (int process = 0; process < processes; ++process)
    children.push_back(std::make_unique<ChildProcess>([&](const auto&) {
      Posts posts;
      WidgetStore widgets(folder / "widgets.json");
      ProfileStore profiles(folder / "profiles.json");
      ColourStore colours(folder / "colours.json", posts);
      WaterStore water(folder / "water.json", posts);
      PlistFileBackend dock(folder / "dock.plist");
      for (int round = 0; round < rounds; ++round) {
        widgets.create("w", ClockSettings{});
        widgets.change(shared,
                       [](DockWidget& widget) { widget.kind.get<NoteSettings>()->text += 'x'; });
        Profile profile;
        profile.id = UUID::random();
        profiles.create(profile);
        colours.add({UUID::random(), process, round, 0, noon, true}, 60);
        water.add(10, noon);
        const auto access = dock.exclusiveAccess();
        auto tiles = dock.readTiles();
        tiles.apps.push_back({});
        dock.writeTiles(tiles);
      }
    }));
  for (const auto& child : children)
    EXPECT_EQ(child->exitStatus(), 0);
  constexpr std::size_t all = std::size_t{processes} * rounds;
  const WidgetStore widgets(folder / "widgets.json");
  EXPECT_EQ(widgets.file().widgets.size(), all + 1);
  EXPECT_EQ(widgets.widget(shared)->kind.get<NoteSettings>()->text.size(), all);
  EXPECT_EQ(ProfileStore(folder / "profiles.json").file().profiles.size(), all);
  Posts posts;
  EXPECT_EQ(ColourStore(folder / "colours.json", posts).history().colours.size(), all);
  EXPECT_EQ(WaterStore(folder / "water.json", posts).log().total(noon, Calendar()),
            processes * rounds * 10);
  EXPECT_EQ(PlistFileBackend(folder / "dock.plist").readTiles().apps.size(), all);
}

} // namespace
} // namespace tavrin
