#include "TavrinPlatform/Linux/Base/InterfaceFont.h"
#include "TavrinPlatform/Linux/Base/ToolkitSettings.h"
#include "TavrinPlatform/Linux/Files/LinuxFileManager.h"
#include "TavrinPlatform/Linux/Files/LinuxUserFiles.h"
#include "TavrinPlatform/Linux/Files/Trash.h"
#include "TavrinPlatform/Linux/Files/UserFolders.h"
#include "TavrinPlatform/Linux/Slot/LinuxMainBundle.h"
#include "TavrinPlatform/Linux/Tile/LinuxDockGeometry.h"
#include "TavrinPlatform/POSIX/JSONUserDefaults.h"

#include "TavrinCore/Base/Errors.h"
#include "TavrinPlatform/Files/AtomicFile.h"
#include "Tests/Support/ManualRunLoop.h"

#include <fstream>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

/// What needs no desktop: folders, bundles and settings.
namespace tavrin {
namespace {

namespace fs = std::filesystem;

class Folder {
public:
  Folder() {
    std::string name = fs::temp_directory_path() / "tavrin-test-XXXXXX";
    path = mkdtemp(name.data());
  }
  ~Folder() { fs::remove_all(path); }
  fs::path write(const fs::path& name, const std::string& text) const {
    fs::create_directories((path / name).parent_path());
    std::ofstream(path / name) << text;
    return path / name;
  }
  fs::path path;
};

class Lines final : public LogSink {
public:
  void write(LogLevel, std::string_view, std::string_view, std::string_view message) override {
    lines.emplace_back(message);
  }
  std::vector<std::string> lines;
};

std::string propertyList(const std::string& entries) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?><plist version=\"1.0\"><dict>" + entries +
         "</dict></plist>";
}

TEST(UserFolders, AreWhatTheFileSaysOfThem) {
  struct Case {
    const char* file;
    std::optional<std::string> folder;
  };
  for (const Case& c :
       {Case{"XDG_DOWNLOAD_DIR=\"$HOME/Load\"\n", "/h/Load"},
        Case{"# x\n  XDG_DOWNLOAD_DIR = \"/data/a \\\"b\\\"\"", "/data/a \"b\""},
        Case{"XDG_DOWNLOAD_DIR=\"/a\"\nXDG_DOWNLOAD_DIR=\"/b\"", "/b"},
        Case{"XDG_DOWNLOAD_DIR=\"$HOME\"", "/h"},
        Case{"XDG_DOWNLOAD_DIR=\"$HOMER/x\"", std::nullopt},
        Case{"XDG_DOWNLOAD_DIR=/unquoted", std::nullopt},
        Case{"XDG_DOWNLOAD_DIR=\"relative\"", std::nullopt},
        Case{"XDG_DOWNLOAD_DIR=\"", std::nullopt}, Case{"XDG_DOWNLOAD_DIR=\"\\\"", std::nullopt},
        Case{"XDG_DOWNLOAD_DIRS=\"/x\"", std::nullopt}, Case{"", std::nullopt}})
    EXPECT_EQ(userFolderIn(c.file, "XDG_DOWNLOAD_DIR", "/h"), c.folder) << c.file;
}

TEST(Trash, TakesAFileOfAnyNameAndTwoOfTheSame) {
  const Folder home;
  const fs::path trash = home.path / "share" / "Trash";
  for (const char* name : {"a b.txt", "a b.txt", "\xFF\n.txt"}) {
    const fs::path file = home.write(name, "text");
    EXPECT_TRUE(moveToTrash(file, trash));
    EXPECT_FALSE(fs::exists(file));
  }
  EXPECT_TRUE(fs::exists(trash / "files" / "a b.txt"));
  EXPECT_TRUE(fs::exists(trash / "files" / "a b.txt.1"));
  std::ifstream info(trash / "info" / "\xFF\n.txt.trashinfo");
  std::string line;
  std::getline(info, line);
  EXPECT_EQ(line, "[Trash Info]");
  std::getline(info, line);
  EXPECT_EQ(line, "Path=" + home.path.native() + "/%FF%0A.txt");
}

TEST(Trash, GivesBackWhatItTookLastFromThere) {
  const Folder home;
  const fs::path trash = home.path / "share" / "Trash";
  const fs::path file = home.path / "a b.txt";
  const auto holds = [&](const char* text) { return readFile(file) == std::string(text); };
  EXPECT_FALSE(restoreFromTrash(file, trash)) << "nothing was taken";
  for (const char* text : {"first", "second"}) {
    home.write("a b.txt", text);
    ASSERT_TRUE(moveToTrash(file, trash));
  }
  home.write("a b.txt", "new");
  EXPECT_FALSE(restoreFromTrash(file, trash)) << "its place is taken";
  EXPECT_TRUE(holds("new"));
  fs::remove(file);
  EXPECT_TRUE(restoreFromTrash(file, trash));
  EXPECT_TRUE(holds("second"));
  fs::remove(file);
  EXPECT_TRUE(restoreFromTrash(file, trash));
  EXPECT_TRUE(holds("first"));
  EXPECT_TRUE(fs::is_empty(trash / "files") && fs::is_empty(trash / "info"));
}

TEST(Trash, LeavesTheFileWhereItCannotTakeIt) {
  const Folder home;
  EXPECT_FALSE(moveToTrash(home.path / "none", home.path / "Trash"));
  EXPECT_FALSE(moveToTrash("relative", home.path / "Trash"));
  EXPECT_FALSE(moveToTrash("/", home.path / "Trash"));
  EXPECT_FALSE(fs::exists(home.path / "Trash" / "files" / "none"));
  const fs::path file = home.write("file", "text");
  home.write("Plain/info", "a file in the folder's place");
  EXPECT_FALSE(moveToTrash(file, home.path / "Plain"));
  EXPECT_TRUE(fs::exists(file));
}

TEST(UserFolders, TheScreenshotFolderIsTheDesktopsOwn) {
  struct Case {
    const char* desktop;
    const char* file;
    const char* text;
    std::string folder;
  };
  const Folder home;
  const std::string h = home.path.native();
  fs::create_directories(home.path / "Pictures");
  const auto folderOf = [&](const Case& c) {
    const fs::path written = home.write(fs::path(".config") / c.file, c.text);
    const LinuxFileManager files({{"HOME", h}, {"XDG_CURRENT_DESKTOP", c.desktop}});
    const auto found = LinuxUserFiles(files, nullptr, nullptr).screenshotFolder();
    fs::remove(written);
    return found;
  };
  for (const Case& c :
       {Case{"KDE", "spectaclerc", "[ImageSave]\nimageSaveLocation=file:///data/a%20b/\n",
             "/data/a b/"},
        Case{"KDE", "spectaclerc", "[ImageSave]\nimageSaveLocation[$e]=file://$HOME/Shots\n",
             h + "/Shots"},
        Case{"KDE", "spectaclerc", "[Save]\ndefaultSaveLocation=file:///old\n", "/old"},
        Case{"KDE", "spectaclerc", "[Other]\nimageSaveLocation=file:///x\n", h + "/Pictures"},
        Case{"XFCE", "spectaclerc", "[ImageSave]\nimageSaveLocation=file:///x\n", h + "/Pictures"},
        Case{"XFCE", "xfce4/xfce4-screenshooter", "app=none\nscreenshot_dir=file:///s\n", "/s"},
        Case{"", "user-dirs.dirs", "XDG_PICTURES_DIR=\"/nowhere/P\"", "/nowhere/P/Screenshots"},
        Case{"", "user-dirs.dirs", "XDG_PICTURES_DIR=\"$HOME/\"", h + "/Pictures"}})
    EXPECT_EQ(folderOf(c), c.folder) << c.text;
  fs::create_directories(home.path / "Pictures" / "Screenshots");
  EXPECT_EQ(folderOf({"", "x", "", ""}), h + "/Pictures/Screenshots");
}

TEST(InterfaceFont, IsWhatADescriptionNamesFirst) {
  struct Case {
    const char* description;
    std::optional<std::string> family;
  };
  for (const Case& c :
       {Case{"Cantarell 11", "Cantarell"}, Case{"Noto Sans Medium Italic 10.5", "Noto Sans"},
        Case{"Source Sans 3 11", "Source Sans 3"}, Case{"Ubuntu", "Ubuntu"},
        Case{"DejaVu Sans, Inter Bold 9", "DejaVu Sans"}, Case{"Bold", "Bold"},
        Case{"  ", std::nullopt}, Case{"", std::nullopt}})
    EXPECT_EQ(fontFamilyOf(c.description), c.family) << c.description;
}

TEST(InterfaceFont, ComesFromTheGeneralGroup) {
  const Folder home;
  const LinuxFileManager files({{"HOME", home.path.string()}});
  EXPECT_EQ(fontFamilyInSettings(files), std::nullopt);
  home.write(".config/kdeglobals",
             "[WM]\nfont=No\n[General]\nfixed=Hack,9\nfont=Noto Sans,10,-1,5,50\n");
  EXPECT_EQ(fontFamilyInSettings(files), "Noto Sans");
}

TEST(ToolkitSettings, AColourSchemeIsDarkByItsWindows) {
  const Folder home;
  const LinuxFileManager files({{"HOME", home.path.string()}});
  EXPECT_FALSE(isDarkInSettings(files));
  for (const auto& [ground, isDark] :
       {std::pair("BackgroundNormal=42,46,50", true),
        std::pair("BackgroundNormal=239,240,241", false),
        std::pair("BackgroundNormal=0,0,255", true), std::pair("BackgroundNormal=", false),
        std::pair("BackgroundNormal=#2a2e32", false), std::pair("BackgroundNormal=1,2", false)}) {
    home.write(".config/kdeglobals", std::string("[Colors:View]\nBackgroundNormal=0,0,0\n"
                                                 "[Colors:Window]\n") +
                                         ground + "\n");
    EXPECT_EQ(isDarkInSettings(files), isDark) << ground;
  }
}

TEST(LinuxFileManager, FollowsTheBaseDirectories) {
  struct Case {
    const char* name;
    LinuxFileManager::Environment environment;
    const char* data;
    const char* cache;
    const char* configuration;
  };
  const Case cases[] = {
      {"defaults", {{"HOME", "/h"}}, "/h/.local/share", "/h/.cache", "/h/.config"},
      {"set",
       {{"HOME", "/h"},
        {"XDG_DATA_HOME", "/d"},
        {"XDG_CACHE_HOME", "/c"},
        {"XDG_CONFIG_HOME", "/e"}},
       "/d",
       "/c",
       "/e"},
      {"relative and empty count as unset",
       {{"HOME", "/h"}, {"XDG_DATA_HOME", "d"}, {"XDG_CACHE_HOME", ""}, {"XDG_CONFIG_HOME", "~/e"}},
       "/h/.local/share",
       "/h/.cache",
       "/h/.config"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const LinuxFileManager files(c.environment);
    EXPECT_EQ(files.applicationSupportFolder(), c.data);
    EXPECT_EQ(files.cachesFolder(), c.cache);
    EXPECT_EQ(files.configurationFolder(), c.configuration);
  }
  EXPECT_TRUE(LinuxFileManager(LinuxFileManager::Environment()).homeFolder().is_absolute())
      << "the account's";
}

TEST(LinuxMainBundle, HardLinksOfOneProgramAreToldApart) {
  const Folder folder;
  for (const int slot : {3, 7}) {
    const fs::path contents = "Tavrin Slot " + std::to_string(slot) + ".app/Contents";
    folder.write(contents / "Info.plist",
                 propertyList("<key>CFBundleIdentifier</key><string>dev.quellby.Tavrin.Slot" +
                              std::to_string(slot) + "</string><key>TavrinSlot</key><integer>" +
                              std::to_string(slot) +
                              "</integer><key>Text</key><string>7</string>"));
    fs::create_directories(folder.path / contents / "MacOS");
    const fs::path program = folder.path / contents / "MacOS/TavrinSlot";
    fs::create_hard_link(folder.write("program", "x"), program);
    const LinuxMainBundle bundle(program);
    EXPECT_EQ(bundle.path(), folder.path / contents.parent_path());
    EXPECT_EQ(bundle.identifier(), "dev.quellby.Tavrin.Slot" + std::to_string(slot));
    EXPECT_EQ(bundle.integer("TavrinSlot"), slot);
    EXPECT_EQ(bundle.integer("Text"), std::nullopt);
    EXPECT_EQ(bundle.string("TavrinSlot"), std::nullopt);
  }
  const LinuxMainBundle none(folder.path / "program");
  EXPECT_EQ(none.path(), std::nullopt);
  EXPECT_EQ(none.identifier(), std::nullopt);
  folder.write("Broken.app/Contents/Info.plist", "<plist><dict><key>TavrinSlot");
  const LinuxMainBundle broken(folder.path / "Broken.app/Contents/MacOS/TavrinSlot");
  EXPECT_TRUE(broken.path());
  EXPECT_EQ(broken.integer("TavrinSlot"), std::nullopt);
}

TEST(DockPreferences, DefaultsStandInForWhatIsMissingOrWrong) {
  struct Case {
    const char* name;
    std::string text;
    const char* orientation;
    double tileSize;
    bool magnification;
  };
  const Case cases[] = {
      {"all",
       propertyList("<key>orientation</key><string>left</string><key>tilesize</key>"
                    "<real>64.5</real><key>magnification</key><true/>"),
       "left", 64.5, true},
      {"whole size", propertyList("<key>tilesize</key><integer>72</integer>"), "bottom", 72, false},
      {"wrong types",
       propertyList("<key>orientation</key><true/><key>tilesize</key>"
                    "<string>64</string><key>magnification</key><integer>1</integer>"),
       "bottom", 48, false},
      {"too small", propertyList("<key>tilesize</key><real>-5</real>"), "bottom", 16, false},
      {"nothing", propertyList("<key>tilesize</key><integer>0</integer>"), "bottom", 16, false},
      {"too large", propertyList("<key>tilesize</key><real>1e9</real>"), "bottom", 256, false},
      {"endless", propertyList("<key>tilesize</key><real>inf</real>"), "bottom", 256, false},
      {"no number", propertyList("<key>tilesize</key><real>nan</real>"), "bottom", 48, false},
      {"an array", "<plist version=\"1.0\"><array/></plist>", "bottom", 48, false},
      {"rubbish", "bplist00\xFF\xFF\xFF", "bottom", 48, false},
      {"empty", "", "bottom", 48, false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const Folder home;
    home.write("Library/Preferences/com.apple.dock.plist", c.text);
    const auto preferences = readDockPreferences(home.path);
    EXPECT_EQ(preferences.orientation, c.orientation);
    EXPECT_EQ(preferences.tileSize, c.tileSize);
    EXPECT_EQ(preferences.magnification, c.magnification);
  }
}

TEST(JSONUserDefaults, ValuesOutliveTheProcessAndBadFilesAreKept) {
  const Folder folder;
  const fs::path file = folder.path / "tavrin/x.json";
  Lines log;
  test::ManualClock clock{Date{}};
  test::ManualRunLoop loop(clock);
  {
    JSONUserDefaults defaults(file, log, loop);
    EXPECT_EQ(defaults.value("a"), std::nullopt);
    defaults.remove("a");
    EXPECT_FALSE(fs::exists(file)) << "nothing to write yet";
    defaults.set("a", JSONValue::parse("{\"n\":1.0}"));
    defaults.set("b", "text");
    defaults.remove("b");
  }
  struct stat status {};
  ASSERT_EQ(::stat(file.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0600U);
  EXPECT_EQ(JSONUserDefaults(file, log, loop).value("a")->compact(), "{\"n\":1.0}");
  EXPECT_EQ(JSONUserDefaults(file, log, loop).value("b"), std::nullopt);
  EXPECT_TRUE(log.lines.empty());

  for (const char* text : {"{", "[1]", ""}) {
    SCOPED_TRACE(text);
    std::ofstream(file) << text;
    log.lines.clear();
    JSONUserDefaults defaults(file, log, loop);
    EXPECT_EQ(defaults.value("a"), std::nullopt);
    EXPECT_EQ(log.lines.size(), 1U);
    defaults.set("a", 5);
    EXPECT_EQ(JSONUserDefaults(file, log, loop).value("a"), JSONValue(5));
    EXPECT_TRUE(fs::exists(file.string() + ".damaged"));
  }
}

TEST(JSONUserDefaults, WhatCannotBeWrittenIsSaidOnceAndWrittenOnceItCan) {
  const Folder folder;
  const fs::path inTheWay = folder.write("no-folder", "");
  const fs::path file = inTheWay / "x.json";
  Lines log;
  test::ManualClock clock{Date{}};
  test::ManualRunLoop loop(clock);
  JSONUserDefaults defaults(file, log, loop);
  defaults.set("a", 1);
  const auto complaints = log.lines.size();
  defaults.set("a", 2);
  EXPECT_EQ(defaults.value("a"), JSONValue(2));
  loop.advance(60);
  EXPECT_EQ(log.lines.size(), complaints);
  ASSERT_FALSE(log.lines.empty());
  EXPECT_TRUE(log.lines.back().starts_with("Failed to ")) << log.lines.back();

  const auto inFile = [&] { return JSONUserDefaults(file, log, loop).value("a"); };
  fs::remove(inTheWay);
  loop.advance(10);
  EXPECT_EQ(inFile(), JSONValue(2)) << "by itself";
  fs::remove_all(inTheWay);
  const std::ofstream again(inTheWay);
  defaults.set("a", 3);
  fs::remove(inTheWay);
  defaults.set("a", 3);
  EXPECT_EQ(inFile(), JSONValue(3)) << "with the next value, though it be the same";
  fs::remove_all(inTheWay);
  const std::ofstream third(inTheWay);
  {
    JSONUserDefaults leaving(file, log, loop);
    leaving.set("a", 4);
    fs::remove(inTheWay);
  }
  EXPECT_EQ(inFile(), JSONValue(4)) << "at the end";
}

} // namespace
} // namespace tavrin

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
