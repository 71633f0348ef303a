#include "TavrinCore/Dock/DockTileMapping.h"
#include "TavrinCore/Settings/HotkeyText.h"
#include "TavrinCore/Settings/SettingError.h"
#include "TavrinHost/Dock/FocusSession.h"
#include "TavrinPlatform/Files/AtomicFile.h"
#include "TavrinStorage/Dock/PlistFileBackend.h"
#include "TavrinStorage/Dock/ProfileStore.h"
#include "Tests/Command/HostFixture.h"
#include "Tests/Support/InLanguage.h"

#include <fcntl.h>
#include <unistd.h>

namespace tavrin::test {
namespace {

namespace fs = std::filesystem;
using Words = std::vector<std::string>;

class DockCommandTest : public HostTest {
protected:
  DockCommandTest() {
    platform.files.home = folder / "home";
    fs::create_directories(dockFile().parent_path());
    write(dockFile(), {"/Applications/Mail.app", "/Applications/Notes.app"});
  }
  fs::path dockFile() const { return folder / "home/Library/Preferences/com.apple.dock.plist"; }
  static DockItem app(const fs::path& path) {
    return {AppEntry{path.string(), "com.x." + path.stem().string(), path.stem().string(), {}}};
  }
  static void write(const fs::path& file, const Words& apps) {
    DockSnapshot dock;
    for (const auto& path : apps)
      dock.apps.push_back(app(path));
    dockPlistWriter(file).write(dock);
  }
  static std::string labels(const fs::path& file) {
    return labelsOf(dockPlistReader(file).read({}));
  }
  std::string bytes() const { return *readFile(dockFile()); }
  std::vector<fs::path> backups() const {
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(folder / "data/backups"))
      files.push_back(entry.path());
    return files;
  }
};

TEST_F(DockCommandTest, EditsInEveryWay) {
  struct Case {
    Words words;
    const char* labels;
  };
  const Case cases[] = {
      {{"add", "/A.app"}, "Mail Notes A |"},
      {{"add", "/A.app", "/B.app", "--position", "first"}, "A B Mail Notes |"},
      {{"add", "/A.app", "--position", "2"}, "Mail A Notes |"},
      {{"add", "/A.app", "--position", "99"}, "Mail Notes A |"},
      {{"add", "/A.app", "--before", "notes"}, "Mail A Notes |"},
      {{"add", "/A.app", "--after", "com.x.Mail"}, "Mail A Notes |"},
      {{"add", "/A.app", "--replacing", "Mail"}, "A Notes |"},
      {{"add", "/A.app", "--replacing", "Absent"}, "Mail Notes A |"},
      {{"add", "/Applications/Mail.app", "--replacing", "Mail", "--label", "Post"}, "Post Notes |"},
      {{"add", "/Applications/Mail.app"}, "Mail Notes |"},
      {{"add", "x://y", "/d/", "/f.txt"}, "Mail Notes | x://y d f.txt"},
      {{"add", "x://y", "--label", "Y", "--section", "apps"}, "Mail Notes Y |"},
      {{"add", "/A.app", "--section", "others"}, "Mail Notes | A"},
      {{"remove", "Mail", "/Applications/Notes.app"}, "|"},
      {{"remove", "file:///Applications/Mail.app/"}, "Notes |"},
      {{"remove", "--all"}, "|"},
      {{"remove", "--spacers"}, "Mail Notes |"},
      {{"move", "Notes", "--position", "first"}, "Notes Mail |"},
      {{"move", "Mail", "--after", "Notes"}, "Notes Mail |"},
      {{"move", "Mail", "--section", "others"}, "Notes | Mail"},
      {{"spacer", "--size", "small", "--before", "Notes"}, "Mail Small spacer Notes |"},
      {{"spacer", "--section", "others"}, "Mail Notes | Spacer"},
  };
  const auto file = folder / "other.plist";
  for (const auto& one : cases) {
    write(file, {"/Applications/Mail.app", "/Applications/Notes.app"});
    Words words = {"dock"};
    words.insert(words.end(), one.words.begin(), one.words.end());
    words.insert(words.end(), {"--file", file.string()});
    EXPECT_EQ(run(words), 0) << errors.str();
    EXPECT_EQ(labels(file), one.labels) << one.words[0] << " " << one.words[1];
  }
  EXPECT_EQ(platform.dock.process.kills, 0);
}

TEST_F(DockCommandTest, ASpacerIsCalledInTheUsersLanguageButForPrograms) {
  EXPECT_EQ(run({"dock", "spacer", "--size", "flex", "--no-restart"}), 0);
  const InLanguage german({{"Flex spacer", "Flexibler Abstand"}}, "de");
  EXPECT_EQ(labels(dockFile()), "Mail Notes Flexibler Abstand |");
  output.str({});
  EXPECT_EQ(run({"dock", "show", "--json"}), 0);
  EXPECT_THAT(output.str(), testing::HasSubstr("Flex spacer"));
}

TEST_F(DockCommandTest, BacksUpWritesAndRestartsOnce) {
  EXPECT_EQ(run({"dock", "remove", "Mail"}), 0);
  EXPECT_EQ(labels(dockFile()), "Notes |");
  EXPECT_EQ(platform.dock.process.kills, 1);
  EXPECT_NE(errors.str().find("`tavrin dock undo` brings it back"), std::string::npos);
  EXPECT_EQ(run({"dock", "undo"}), 0);
  EXPECT_EQ(labels(dockFile()), "Mail Notes |");
  EXPECT_EQ(run({"dock", "edit", "--no-restart"}, "# all anew\nremove --all\nspacer\n"
                                                  "add /X.app --allow-missing\n"),
            0);
  EXPECT_EQ(labels(dockFile()), "Spacer X |");
  EXPECT_EQ(platform.dock.process.kills, 2);
  EXPECT_EQ(run({"dock", "move", "X", "--position", "last"}), 0);
  EXPECT_EQ(output.str(), "Nothing to change\n");
  EXPECT_EQ(platform.dock.process.kills, 2);
}

TEST_F(DockCommandTest, WhatOthersPutIntoTheDockWhileItRestartsStays) {
  platform.dock.process.whileRestarting = [this] {
    dockPlistWriter(dockFile())
        .write({{app("/Applications/Notes.app"), app("/A.app"), app("/Other.app")}, {}, {}});
  };
  EXPECT_EQ(run({"dock", "edit"}, "add /A.app --allow-missing\nremove Mail\n"), 0) << errors.str();
  EXPECT_EQ(labels(dockFile()), "Notes A Other |");
  EXPECT_EQ(platform.dock.process.kills, 1);

  platform.dock.process.whileRestarting = [this] {
    write(dockFile(), {"/Applications/Notes.app", "/A.app", "/Other.app"});
  };
  EXPECT_EQ(run({"dock", "move", "Other", "--position", "first"}), 0) << errors.str();
  EXPECT_EQ(labels(dockFile()), "Other Notes A |") << "the Dock had put its old items back";
  EXPECT_EQ(platform.dock.process.kills, 3);
  EXPECT_EQ(backups().size(), 2U);
}

TEST_F(DockCommandTest, SaysWhichFilesWereWrittenBeforeOneFailed) {
  const auto gone = folder / "gone/b.plist";
  fs::create_directory(gone.parent_path());
  for (const auto& file : {folder / "a.plist", gone})
    write(file, {"/Applications/Mail.app"});
  // It can still be read, and its folder not be written.
  const int open = ::open(gone.c_str(), O_RDONLY | O_CLOEXEC);
  ASSERT_GE(open, 0);
  fs::remove_all(gone.parent_path());
  EXPECT_EQ(run({"dock", "add", "x://y", "--json", "--file", (folder / "a.plist").string(),
                 "--file", "/proc/self/fd/" + std::to_string(open)}),
            13)
      << errors.str();
  ::close(open);
  const auto report = JSONValue::parse(output.str());
  ASSERT_EQ(report.array()->size(), 1U);
  EXPECT_EQ(*report.array()->front().member("written"), JSONValue(true));
  EXPECT_EQ(labels(folder / "a.plist"), "Mail | x://y");
}

TEST_F(DockCommandTest, SaysWhetherItWasWritten) {
  EXPECT_EQ(run({"profiles", "create", "at/work", "--activate"}), 0);
  EXPECT_EQ(*json({"profiles", "apply"}).member("written"), JSONValue(false));
  EXPECT_EQ(run({"dock", "remove", "Mail"}), 0);
  EXPECT_EQ(*json({"profiles", "apply"}).member("written"), JSONValue(true));
  EXPECT_EQ(run({"dock", "remove", "Mail"}), 0);
  EXPECT_EQ(run({"dock", "apply", "at/work"}), 0) << errors.str();
  EXPECT_EQ(labels(dockFile()), "Mail Notes |");
  EXPECT_EQ(run({"dock", "apply", "at/home"}), 10) << "neither a file nor a profile";
  write(folder / "other.plist", {});
  EXPECT_EQ(run({"dock", "edit", "--file", (folder / "other.plist").string()}, "add\t/gone.app\n"),
            0)
      << errors.str();
  EXPECT_EQ(labels(folder / "other.plist"), "gone |");
}

TEST_F(DockCommandTest, WritesNothingOnADryRunOrAnError) {
  const auto before = bytes();
  struct Case {
    Words words;
    int status;
    const char* sentence;
  };
  write(folder / "good.plist", {"/a/Same.app", "/b/Same.app"});
  writeFileAtomically(folder / "bad.plist", "<plist><dict><key>persistent-apps</key>"
                                            "<array><dict/></array></dict></plist>");
  writeFileAtomically(folder / "new.plist",
                      "<plist><dict><key>persistent-apps</key><array><dict><key>tile-type</key>"
                      "<string>recents-tile</string></dict></array></dict></plist>");
  const auto at = [this](const char* name) { return (folder / name).string(); };
  const std::string same = *readFile(at("good.plist"));
  const Case cases[] = {
      {{"remove", "Mail", "--dry-run"}, 0, ""},
      {{"remove", "Absent"}, 3, "no item of the Dock goes by \"Absent\""},
      {{"remove", "Same", "--file", at("good.plist")},
       4,
       "\"Same\" may be \"Same\" (apps, 1) or \"Same\" (apps, 2)"},
      {{"remove", "--all", "--file", at("good.plist"), "--file", at("bad.plist")},
       12,
       "because tile is missing tile-type\nIt is tile 1 of persistent-apps."},
      {{"show", "--file", at("new.plist")},
       14,
       "Failed to handle dock item of type recents-tile because it is not supported"},
      {{"show", "--file", at("none.plist")}, 10, "Failed to locate dock plist at "},
      {{"show", "--file", folder.string()}, 11, "because it is not a regular file"},
      {{"add", "/nowhere/to/be"}, 16, "Failed to find file at /nowhere/to/be"},
      {{"add", "x://\x01", "--no-restart"}, 13, "because a text holds a character that XML cannot"},
      {{"move", "Mail"}, 2, "say where to"},
      {{"move", "Mail", "--position", "0"}, 5, "is no position"},
      {{"undo"}, 18, "Cannot undo because there is no Dock backup yet"},
      {{"apply", "Absent"}, 17, "no profile is called \"Absent\"; there are none yet"},
  };
  for (const auto& one : cases) {
    Words words = {"dock"};
    words.insert(words.end(), one.words.begin(), one.words.end());
    fs::remove_all(folder / "data/backups");
    EXPECT_EQ(run(words), one.status) << one.words[0] << errors.str();
    EXPECT_NE(errors.str().find(one.sentence), std::string::npos) << errors.str();
    EXPECT_EQ(bytes(), before);
    EXPECT_EQ(*readFile(at("good.plist")), same);
  }
  platform.dock.process.isThere = false;
  EXPECT_EQ(run({"dock", "remove", "Mail"}), 15);
  EXPECT_NE(errors.str().find("tavrin: Failed to reload dock because killall exited with 1: Dock: "
                              "no process found"),
            std::string::npos);
}

TEST_F(DockCommandTest, ShowsFindsAndCompares) {
  EXPECT_EQ(json({"dock", "show"}).array()->size(), 2U);
  const auto found = json({"dock", "find", "com.x.notes"});
  EXPECT_EQ(found.array()->front().member("position")->integerValue(), 2);
  EXPECT_EQ(run({"dock", "find", "Absent"}), 3);
  EXPECT_EQ(run({"dock", "add", "/usr", "--view", "list", "--sort", "kind", "--no-restart"}), 0);
  const auto entry = *dockPlistReader(dockFile()).read({}).others.front().file();
  EXPECT_EQ(folderOptions(entry).view, FolderOptions::View::list);
  ASSERT_EQ(backups().size(), 1U);
  const auto difference = json({"dock", "diff", backups().front().filename().string()});
  EXPECT_EQ(difference.member("added")->array()->size(), 1U);
  EXPECT_EQ(json({"dock", "backups"}).array()->size(), 1U);
  EXPECT_EQ(run({"dock", "apply", backups().front().stem().string()}), 0);
  EXPECT_EQ(labels(dockFile()), "Mail Notes |");
}

TEST_F(DockCommandTest, KeepsProfiles) {
  EXPECT_EQ(run({"profiles", "create", "Work", "--color", "green"}), 0);
  EXPECT_EQ(run({"profiles", "create", "Empty", "--empty"}), 0);
  EXPECT_EQ(run({"profiles", "switch", "empt", "--dry-run"}), 0);
  EXPECT_EQ(labels(dockFile()), "Mail Notes |");
  EXPECT_EQ(run({"profiles", "switch", "empt"}), 0);
  EXPECT_EQ(labels(dockFile()), "|");
  EXPECT_EQ(run({"profiles", "switch", "Work"}), 0);
  EXPECT_EQ(run({"dock", "remove", "Mail"}), 0);
  EXPECT_TRUE(*json({"profiles", "capture"}).member("changed")->boolean());
  EXPECT_EQ(run({"profiles", "rename", "Work", "Job"}), 0);
  EXPECT_EQ(run({"profiles", "hotkey", "Job", "ctrl+alt+1"}), 0);
  const auto listed = json({"profiles", "list"});
  const auto& job = listed.array()->front();
  EXPECT_EQ(*job.member("name")->string(), "Job");
  EXPECT_EQ(*job.member("hotkey")->string(), "⌃⌥1");
  EXPECT_EQ(job.member("items")->integerValue(), 1);
  EXPECT_TRUE(*job.member("active")->boolean());
  EXPECT_EQ(run({"profiles", "export", "Job"}), 0);
  const auto exported = output.str();
  EXPECT_EQ(run({"profiles", "import", "-"}, exported), 0);
  EXPECT_EQ(output.str(), "Added \"Job (Imported)\"\n");
  EXPECT_EQ(run({"profiles", "switch", "jo"}), 4);
  EXPECT_EQ(run({"profiles", "delete", "Nobody"}), 17);
  EXPECT_EQ(run({"profiles", "delete", "Job"}), 0);
  EXPECT_EQ(run({"profiles", "apply"}), 3);
  EXPECT_EQ(run({"profiles", "import", "-"}, "{"), 1);
}

TEST_F(DockCommandTest, ABrokenProfilesFileStopsOnlyWhatNeedsIt) {
  writeFile("");
  writeFileAtomically(folder / "data/profiles.json", "{");
  EXPECT_EQ(run({"profiles", "create", "Work"}), 1);
  EXPECT_EQ(*readFile(folder / "data/profiles.json"), "{");
  EXPECT_EQ(run({"dock", "remove", "Mail"}), 0);
  EXPECT_EQ(run({"dock", "apply", backups().front().filename().string()}), 0);
  EXPECT_EQ(labels(dockFile()), "Mail Notes |");
}

TEST_F(DockCommandTest, RestoresTheWorkspace) {
  writeFile(R"({"version":1,"widgets":[]})");
  EXPECT_EQ(run({"backups", "create"}), 0);
  EXPECT_EQ(run({"backups", "create"}), 0);
  EXPECT_EQ(output.str(), "Nothing has changed since the last backup\n");
  writeFile("broken");
  platform.time.date = platform.time.date + 1;
  EXPECT_EQ(run({"backups", "restore", "latest"}), 0) << errors.str();
  EXPECT_EQ(fileText(), R"({"version":1,"widgets":[]})");
  EXPECT_NE(errors.str().find("-restore` brings them back"), std::string::npos) << errors.str();
  EXPECT_EQ(platform.center.posts.back(), "dev.quellby.tavrin.widgetsChanged");
  // What was broken can be listed but takes nobody's place.
  EXPECT_EQ(json({"backups", "list"}).array()->size(), 2U);
  EXPECT_EQ(run({"backups", "restore", "latest"}), 1);
  EXPECT_EQ(fileText(), R"({"version":1,"widgets":[]})");
  EXPECT_EQ(run({"backups", "show", "nothing"}), 3);
}

TEST_F(DockCommandTest, FollowsTheFocusAndTheShortcuts) {
  EXPECT_EQ(run({"profiles", "create", "Day", "--activate"}), 0);
  EXPECT_EQ(run({"profiles", "create", "Calm", "--empty", "--focus", "Sleep"}), 0);
  auto& dock = platform.dock;
  const auto pass = [&](double seconds) {
    dock.loop.advance(seconds);
    // The monitor's queue hands over to the switching queue, and that back to the main thread.
    for (int i = 0; i < 3; ++i)
      dock.loop.runBackground();
  };
  const auto active = [&] {
    return ProfileStore(folder / "data/profiles.json").file().activeProfileId;
  };
  const auto profiles = ProfileStore(folder / "data/profiles.json").file().profiles;
  dock.whileRunning = [&] {
    pass(0);
    ASSERT_EQ(dock.shortcuts.bound.size(), 2U);
    EXPECT_EQ(dock.shortcuts.bound[1].hotkey, (Hotkey{19, {6}}));
    dock.focus.state = true;
    pass(2);
    EXPECT_EQ(active(), profiles[1].id);
    EXPECT_EQ(labels(dockFile()), "|");
    dock.focus.state = std::nullopt;
    pass(2);
    dock.focus.state = false;
    pass(2);
    EXPECT_EQ(active(), profiles[0].id);
    EXPECT_EQ(labels(dockFile()), "Mail Notes |");
    dock.shortcuts.pressed(profiles[1].id.text());
    pass(0);
    EXPECT_EQ(active(), profiles[1].id);
    ProfileStore store(folder / "data/profiles.json");
    store.remove(profiles[0].id);
    pass(6);
    EXPECT_EQ(dock.shortcuts.bound.size(), 1U);
    EXPECT_EQ(dock.shortcuts.binds, 2);
  };
  EXPECT_EQ(run({"focus"}), 0) << errors.str();
  EXPECT_EQ(json({"backups", "list"}).array()->size(), 2U);

  for (const auto* modifiers : {"shift", "", "hyper"})
    EXPECT_NE(run({"focus", "--numbered", modifiers}), 0) << modifiers;
  EXPECT_EQ(dock.shortcuts.binds, 2) << "taken from every application";
  EXPECT_EQ(json({"backups", "list"}).array()->size(), 2U) << "it never ran";
}

TEST_F(DockCommandTest, FollowsAsItIsSetWhileItRunsAndOnce) {
  EXPECT_EQ(run({"profiles", "create", "Day"}), 0);
  EXPECT_EQ(run({"profiles", "create", "Calm", "--empty", "--focus", "on"}), 0);
  auto& dock = platform.dock;
  const auto pass = [&](double seconds) {
    dock.loop.advance(seconds);
    for (int i = 0; i < 3; ++i)
      dock.loop.runBackground();
  };
  SilentContext context(platform);
  auto record = followingRecord(context);
  dock.whileRunning = [&] {
    dock.focus.state = true;
    pass(0);
    pass(0);
    EXPECT_EQ(labels(dockFile()), "|");
    EXPECT_EQ(run({"profiles", "switch", "Day"}), 0) << errors.str();
    record.change([](Following& following) {
      following.interval = 60;
      following.numbered = {};
    });
    pass(3);
    pass(0);
    EXPECT_TRUE(dock.shortcuts.bound.empty());
    EXPECT_EQ(labels(dockFile()), "Mail Notes |") << "the Focus is known, and is no news";
    dock.focus.state = false;
    pass(30);
    EXPECT_EQ(labels(dockFile()), "Mail Notes |") << "it is not yet looked at";
    EXPECT_EQ(run({"focus"}), 0);
    EXPECT_EQ(output.str(), "Shortcuts and Focus are followed already.\n");
  };
  EXPECT_EQ(run({"focus"}), 0) << errors.str();
  // What cannot be read is followed in the usual way.
  std::ofstream(folder / "data/following.json") << "{";
  platform.running.owners.clear();
  dock.whileRunning = [&] {
    pass(0);
    dock.focus.state = true;
    pass(2);
    EXPECT_EQ(labels(dockFile()), "|");
  };
  EXPECT_EQ(run({"focus"}), 0) << errors.str();
}

TEST(ProfileForFocus, TakesTheFirstThatIsBound) {
  ProfilesFile file;
  for (const auto* binding : {"", "Off", "Work", "on"}) {
    Profile profile;
    profile.id = UUID::random();
    if (*binding != '\0')
      profile.focusModeBinding = binding;
    file.profiles.push_back(profile);
  }
  EXPECT_EQ(profileForFocus(file, true), file.profiles[2].id);
  EXPECT_EQ(profileForFocus(file, false), file.profiles[1].id);
  file.profiles.resize(1);
  EXPECT_EQ(profileForFocus(file, true), std::nullopt);
}

TEST(HotkeyText, ReadsAndShowsShortcuts) {
  EXPECT_EQ(hotkeyFromText("Ctrl+ALT+1"), (Hotkey{18, {6}}));
  EXPECT_EQ(hotkeySymbols(hotkeyFromText("super+shift+f5")), "⇧⌘F5");
  EXPECT_EQ(hotkeySymbols({200, {4}}), "⌃key 200");
  EXPECT_EQ(hotkeyWords(hotkeyFromText("super+shift+f5")), "Shift+Super+F5");
  EXPECT_EQ(hotkeyWords(hotkeyFromText("ctrl+alt+space")), "Ctrl+Alt+Space");
  EXPECT_EQ(hotkeyWords(hotkeyFromText("ctrl+minus")), "Ctrl+-");
  EXPECT_EQ(hotkeyWords({200, {4}}), "Ctrl+key 200");
  for (const auto* text : {"", "1", "shift+1", "ctrl+", "ctrl+nokey", "hyper+1"})
    EXPECT_THROW(hotkeyFromText(text), SettingError) << text;
}

} // namespace
} // namespace tavrin::test
