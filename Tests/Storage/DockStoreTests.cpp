#include "TavrinCore/Base/Errors.h"
#include "TavrinPlatform/Linux/Dock/FilePreferencesService.h"
#include "TavrinStorage/Dock/BackupManager.h"
#include "TavrinStorage/Dock/CFPreferencesBackend.h"
#include "TavrinStorage/Dock/PlistFileBackend.h"
#include "TavrinStorage/Dock/ProfileSwitcher.h"
#include "TavrinStorage/Dock/SystemDockReloader.h"
#include "Tests/Storage/TemporaryFolder.h"
#include "Tests/Support/ManualRunLoop.h"

#include <gtest/gtest.h>

namespace tavrin {
namespace {

namespace fs = std::filesystem;

DockItem app(const std::string& path) {
  return {AppEntry{path, {}, {}, {}}};
}

DockSnapshot layout(const std::vector<std::string>& paths) {
  DockSnapshot snapshot;
  for (const auto& path : paths)
    snapshot.apps.push_back(app(path));
  return snapshot;
}

std::vector<std::string> appPaths(const DockSnapshot& snapshot) {
  std::vector<std::string> paths;
  for (const auto& item : snapshot.apps)
    paths.push_back(item.app()->path);
  return paths;
}

PropertyList listIn(const fs::path& file) {
  return PropertyList::parse(contents(file));
}

TEST(PlistFileBackend, KeepsAllOtherKeysAndSaysWhatFailed) {
  const TemporaryFolder folder;
  const auto file = folder / "dock.plist";
  PlistFileBackend backend(file);
  EXPECT_EQ(errorOf<DockError>([&] { backend.readTiles(); }),
            "Failed to locate dock plist at " + file.string());
  backend.writeTiles({});
  EXPECT_EQ(listIn(file),
            PropertyList(PropertyList::Dictionary{{"persistent-apps", PropertyList::Array{}},
                                                  {"persistent-others", PropertyList::Array{}}}));
  const PropertyList::Dictionary root{{"tilesize", 48.5}, {"persistent-others", "no list"}};
  put(file, std::string(PropertyList(root).binary().view()));
  EXPECT_EQ(errorOf<DockError>([&] { backend.readTiles(); }),
            "Failed to decode dock plist at " + file.string() +
                " because persistent-others is not an array of dicts");
  backend.writeTiles({{{{"tile-type", "spacer-tile"}}}, {}});
  EXPECT_EQ(*listIn(file).entry("tilesize")->real(), 48.5);
  EXPECT_EQ(backend.readTiles().apps.size(), 1U);
}

TEST(PlistFileBackend, RefusesWhatIsNoPropertyListAndWritesNothing) {
  const TemporaryFolder folder;
  const auto file = folder / "dock.plist";
  for (const std::string bytes : {"", "garbage", "<plist><array/></plist>", "bplist00"}) {
    put(file, bytes);
    PlistFileBackend backend(file);
    for (const auto& sentence : {errorOf<DockError>([&] { backend.readTiles(); }),
                                 errorOf<DockError>([&] { backend.writeTiles({}); })})
      EXPECT_TRUE(
          sentence.starts_with("Failed to decode dock plist at " + file.string() + " because "))
          << sentence;
    EXPECT_EQ(contents(file), bytes);
  }
}

TEST(PlistFileBackend, RefusesFoldersAndCyclesOfLinks) {
  const TemporaryFolder folder;
  fs::create_directory(folder / "folder");
  fs::create_symlink(folder / "b", folder / "a");
  fs::create_symlink(folder / "a", folder / "b");
  for (const auto* name : {"folder", "a"}) {
    PlistFileBackend backend(folder / name);
    EXPECT_TRUE(errorOf<DockError>([&] {
                  backend.readTiles();
                }).starts_with("Failed to read dock plist at " + (folder / name).string()));
    EXPECT_NE(errorOf<DockError>([&] { backend.writeTiles({}); }), "");
  }
  PlistFileBackend nowhere(folder / "none" / "dock.plist");
  EXPECT_TRUE(errorOf<DockError>([&] {
                nowhere.writeTiles({});
              }).starts_with("Failed to write dock plist at "));
}

TEST(CFPreferencesBackend, StandsOnTheFileOfTheDomain) {
  const TemporaryFolder home;
  const auto folder = home / "Library" / "Preferences";
  FilePreferencesService service(folder);
  CFPreferencesBackend backend(service, home.path());
  EXPECT_EQ(backend.readTiles(), DockTiles{});
  backend.writeTiles({{{{"tile-type", "spacer-tile"}}}, {}});
  EXPECT_EQ(PlistFileBackend(folder / "com.apple.dock.plist").readTiles(), backend.readTiles());
  put(folder / "com.apple.dock.plist", "garbage");
  EXPECT_TRUE(errorOf<DockError>([&] {
                backend.readTiles();
              }).starts_with("Failed to decode dock plist at " + backend.url().string()));
  EXPECT_EQ(errorOf<DockError>([&] { backend.writeTiles({}); }),
            "Failed to write dock plist at " + backend.url().string() +
                " because syntax error in line 1");
  EXPECT_EQ(contents(folder / "com.apple.dock.plist"), "garbage");
}

/// A Dock that exists on paper; time passes only while somebody sleeps.
struct PaperDock final : DockProcess {
  std::optional<Running> running() override {
    if (restartAt && time >= *restartAt)
      return Running{2, 0.0};
    return restartAt && leavesAtOnce ? std::nullopt : now;
  }
  KillResult killAll() override {
    if (!canLaunch)
      throw FileError("Failed to start killall because none", "none");
    restartAt = restartsAfter ? std::optional(time + *restartsAfter) : std::nullopt;
    return result;
  }
  double uptime() override { return time; }
  void sleep(double seconds) override { time += seconds; }

  std::optional<Running> now = Running{1, 100.0};
  std::optional<double> restartsAfter = 0.3;
  bool leavesAtOnce = true;
  bool canLaunch = true;
  KillResult result{0, ""};
  double time = 1000;
  std::optional<double> restartAt;
};

TEST(SystemDockReloader, WaitsForAnotherProcess) {
  struct Case {
    const char* name;
    std::optional<DockProcess::Running> before;
    std::optional<double> restartsAfter;
    DockProcess::KillResult result;
    const char* reason;
    double longest;
  };
  for (const Case& one :
       {Case{"at once", {{1, 9.0}}, 0, {0, ""}, "", 0.01},
        Case{"late", {{1, 9.0}}, 4.8, {0, ""}, "", 4.95},
        Case{"none before", std::nullopt, 1, {0, ""}, "", 1.2},
        Case{"keeps its number",
             {{1, 9.0}},
             std::nullopt,
             {0, ""},
             "the Dock did not relaunch",
             5.2},
        Case{"too late", {{1, 9.0}}, 6, {0, ""}, "the Dock did not relaunch", 5.2},
        Case{"killall fails",
             {{1, 9.0}},
             0,
             {1, " Dock: no process found\n"},
             "killall exited with 1: Dock: no process found",
             0},
        Case{"no text", {{1, 9.0}}, 0, {3, std::nullopt}, "killall exited with 3", 0}}) {
    PaperDock dock;
    dock.now = one.before;
    dock.restartsAfter = one.restartsAfter;
    dock.result = one.result;
    const std::string sentence = errorOf<DockError>([&] { SystemDockReloader(dock).reload(); });
    EXPECT_EQ(sentence,
              *one.reason == '\0' ? "" : std::string("Failed to reload dock because ") + one.reason)
        << one.name;
    EXPECT_LE(dock.time - 1000, one.longest + 1e-9) << one.name;
  }
  PaperDock dock;
  dock.canLaunch = false;
  EXPECT_EQ(errorOf<DockError>([&] { SystemDockReloader(dock).reload(); }),
            "Failed to reload dock because failed to launch killall: none");
}

TEST(SystemDockReloader, LetsAYoungDockSettle) {
  const std::tuple<std::optional<DockProcess::Running>, double> cases[] = {
      {std::nullopt, 0}, {{{1, std::nullopt}}, 0}, {{{1, 0.5}}, 1.5},
      {{{1, 2.0}}, 0},   {{{1, 500.0}}, 0},        {{{1, -3600.0}}, 2},
  };
  for (const auto& [running, waited] : cases) {
    PaperDock dock;
    dock.now = running;
    SystemDockReloader(dock).waitUntilSettled();
    EXPECT_NEAR(dock.time - 1000, waited, 1e-9);
  }
}

class BackupTest : public testing::Test {
protected:
  std::vector<std::string> names() const {
    std::vector<std::string> all;
    for (const auto& file : manager.listBackups())
      all.push_back(file.filename().string());
    return all;
  }

  TemporaryFolder folder;
  std::shared_ptr<PlistFileBackend> dock =
      std::make_shared<PlistFileBackend>(folder / "dock.plist");
  BackupManager manager{folder / "backups", dock};
  Date noon = Date::fromUnixSeconds(1794691247.123);
};

TEST_F(BackupTest, NamesBackupsByTheirMomentAndKeepsTheirOrder) {
  EXPECT_TRUE(manager.listBackups().empty());
  EXPECT_NE(errorOf<DockError>([&] { manager.snapshot(noon); }), "");
  DockPlistWriter{dock}.write(layout({"/a"}));
  manager.snapshot(noon);
  manager.snapshot(noon);
  // The clock was set back: the newest backup must stay the newest.
  manager.snapshot(noon - 86400);
  EXPECT_EQ(names(), (std::vector<std::string>{"dock-2026-11-14T21-20-47.123Z.plist",
                                               "dock-2026-11-14T21-20-47.123Z-001.plist",
                                               "dock-2026-11-14T21-20-47.123Z-002.plist"}));
  manager.prune(2);
  manager.snapshot(noon);
  EXPECT_EQ(names().back(), "dock-2026-11-14T21-20-47.123Z-003.plist");
  manager.snapshot(noon + 1);
  EXPECT_EQ(names().back(), "dock-2026-11-14T21-20-48.123Z.plist");
  put(manager.directory / "other.plist", "");
  manager.prune(20);
  EXPECT_EQ(names().size(), 4U);
  EXPECT_EQ(appPaths(dockPlistReader(*manager.latestBackup()).read(noon)),
            std::vector<std::string>{"/a"});
}

/// Restarts at once; something may happen meanwhile, and it may fail.
struct Reloader final : DockReloader {
  void waitUntilSettled() override {
    if (whileSettling)
      whileSettling();
  }
  void reload() override {
    ++count;
    if (whileRestarting)
      whileRestarting();
    if (fails)
      throw DockError::dockReloadFailed("the Dock did not relaunch");
  }
  int count = 0;
  bool fails = false;
  std::function<void()> whileSettling;
  std::function<void()> whileRestarting;
};

struct Watcher final : WorkspaceSwitchObserver {
  void profileBecameActive(const Profile& profile) override { names.push_back(profile.name); }
  std::vector<std::string> names;
};

class SwitcherTest : public BackupTest {
protected:
  SwitcherTest() {
    DockPlistWriter{dock}.write(layout({"/a"}));
    work = add("Work", {"/a", "/b"});
    home = add("Home", {"/c"});
    switcher.workspaceObserver = watcher;
  }
  UUID add(const char* name, const std::vector<std::string>& paths) {
    Profile profile;
    profile.id = UUID::random();
    profile.name = name;
    profile.items = layout(paths).apps;
    return store.create(profile).id;
  }
  std::vector<std::string> paths() { return appPaths(DockPlistReader{dock}.read({})); }

  std::shared_ptr<Reloader> reloader = std::make_shared<Reloader>();
  std::shared_ptr<Watcher> watcher = std::make_shared<Watcher>();
  test::ManualClock clock{noon};
  ProfileStore store{folder / "profiles.json"};
  ProfileSwitcher switcher{store, DockSwapper::over(dock, reloader), manager, clock};
  UUID work;
  UUID home;
};

TEST_F(SwitcherTest, SwitchesAndUndoes) {
  switcher.switchTo(work);
  EXPECT_EQ(paths(), (std::vector<std::string>{"/a", "/b"}));
  EXPECT_EQ(store.file().activeProfileId, work);
  switcher.switchTo(work);
  EXPECT_EQ(reloader->count, 1);
  EXPECT_EQ(names().size(), 1U);
  switcher.switchTo(home);
  EXPECT_EQ(watcher->names, (std::vector<std::string>{"Work", "Home"}));
  switcher.undoLastChange();
  EXPECT_EQ(paths(), (std::vector<std::string>{"/a", "/b"}));
  EXPECT_EQ(store.file().activeProfileId, work);
  switcher.undoLastChange();
  EXPECT_EQ(paths(), std::vector<std::string>{"/c"});
  EXPECT_EQ(ProfileStore(store.url()).file().activeProfileId, home);
  EXPECT_EQ(names().size(), 2U);
}

TEST_F(SwitcherTest, LeavesTheProfilesAloneWhenTheDockFails) {
  reloader->fails = true;
  const auto before = contents(store.url());
  EXPECT_EQ(errorOf<DockError>([&] { switcher.switchTo(home); }),
            "Failed to reload dock because the Dock did not relaunch");
  EXPECT_EQ(contents(store.url()), before);
  EXPECT_EQ(names().size(), 1U);
  reloader->fails = false;
  switcher.undoLastChange();
  EXPECT_EQ(paths(), std::vector<std::string>{"/a"});
  EXPECT_FALSE(store.file().activeProfileId);
}

TEST_F(SwitcherTest, CapturesAppliesAndActivates) {
  EXPECT_FALSE(switcher.captureCurrentDock());
  switcher.activate(work);
  EXPECT_EQ(reloader->count, 0);
  EXPECT_TRUE(switcher.captureCurrentDock());
  EXPECT_FALSE(switcher.captureCurrentDock());
  EXPECT_EQ(appPaths(store.profile(work)->snapshot({})), std::vector<std::string>{"/a"});
  EXPECT_FALSE(switcher.applyActiveProfile());
  DockPlistWriter{dock}.write(layout({"/z"}));
  EXPECT_TRUE(switcher.applyActiveProfile());
  EXPECT_EQ(paths(), std::vector<std::string>{"/a"});
  EXPECT_EQ(reloader->count, 1);
  store.remove(work);
  EXPECT_FALSE(ProfileStore(store.url()).file().activeProfileId);
  const auto text = work.text();
  Profile gone;
  gone.id = work;
  for (const auto& sentence : {errorOf<DockError>([&] { switcher.switchTo(work); }),
                               errorOf<DockError>([&] { switcher.activate(work); }),
                               errorOf<DockError>([&] { store.update(gone); })})
    EXPECT_EQ(sentence, "Failed to find profile with id " + text);
}

TEST_F(SwitcherTest, KeepsWhatOthersDoToTheProfilesMeanwhile) {
  ProfileStore other(store.url());
  Profile made;
  made.id = UUID::random();
  reloader->whileSettling = [&] {
    other.change(work, [&](Profile& profile) { profile.items = layout({"/new"}).apps; });
  };
  reloader->whileRestarting = [&] { other.create(made); };
  EXPECT_TRUE(switcher.switchTo(work));
  EXPECT_EQ(paths(), std::vector<std::string>{"/new"}) << "looked up before the wait";
  const auto kept = ProfileStore(store.url()).file();
  EXPECT_EQ(kept.activeProfileId, work);
  EXPECT_EQ(kept.profiles.size(), 3U) << "the one made meanwhile is gone";

  reloader->whileRestarting = nullptr;
  reloader->whileSettling = [&] { other.remove(home); };
  EXPECT_EQ(errorOf<DockError>([&] { switcher.switchTo(home); }),
            "Failed to find profile with id " + home.text());
  EXPECT_EQ(paths(), std::vector<std::string>{"/new"});
  EXPECT_EQ(names().size(), 1U);
}

TEST_F(SwitcherTest, ALayoutWrittenByHandAgreesWithTheDock) {
  store.change(work,
               [&](Profile& profile) { profile.others = layout({"/Applications/Mail.app"}).apps; });
  switcher.switchTo(work);
  EXPECT_FALSE(switcher.applyActiveProfile()) << "an application right of the divider is a file";
  EXPECT_EQ(names().size(), 1U);
}

TEST_F(SwitcherTest, OldBackupsGoAlsoWhereTheRestartFails) {
  for (std::size_t i = 0; i < BackupManager::defaultLimit; ++i)
    manager.snapshot(noon);
  reloader->fails = true;
  EXPECT_THROW(switcher.switchTo(home), DockError);
  EXPECT_EQ(names().size(), BackupManager::defaultLimit);
}

TEST_F(SwitcherTest, UndoesNothingWithoutABackup) {
  EXPECT_EQ(errorOf<DockError>([&] { switcher.undoLastChange(); }),
            "Cannot undo because there is no Dock backup yet");
}

TEST(ProfileStore, RefusesABrokenFileAndLeavesIt) {
  const TemporaryFolder folder;
  const auto file = folder / "profiles.json";
  EXPECT_FALSE(ProfileStore(file).fileExistedOnLoad());
  const std::string whole = encode(ProfilesFile{}).prettyPrinted();
  for (std::size_t length = 0; length < whole.size(); ++length) {
    put(file, whole.substr(0, length));
    EXPECT_NE(errorOf<FileError>([&] { ProfileStore store(file); }), "") << length;
    EXPECT_EQ(contents(file), whole.substr(0, length));
  }
  put(file, whole);
  EXPECT_TRUE(ProfileStore(file).fileExistedOnLoad());
}

} // namespace
} // namespace tavrin
