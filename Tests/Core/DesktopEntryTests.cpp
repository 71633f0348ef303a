#include "TavrinCore/Desktop/DesktopEntry.h"
#include "TavrinCore/Desktop/IconTheme.h"

#include <gmock/gmock.h>
#include <set>

namespace tavrin {
namespace {

using testing::ElementsAre;
using Words = std::vector<std::string>;

TEST(DesktopEntry, LocaleKeysComeBestFirst) {
  const std::pair<const char*, Words> cases[] = {
      {"de_AT.UTF-8@euro", {"de_AT@euro", "de_AT", "de@euro", "de"}},
      {"de_AT.UTF-8", {"de_AT", "de"}},
      {"sr@latin", {"sr@latin", "sr"}},
      {"fr", {"fr"}},
      {"C.UTF-8", {}},
      {"POSIX", {}},
      {"", {}},
      {"@x", {}},
  };
  for (const auto& [locale, keys] : cases)
    EXPECT_EQ(localeKeys(locale), keys) << locale;
}

TEST(DesktopEntry, ReadsAWholeEntryInTheUsersLanguage) {
  const auto entry = DesktopEntry::parse("# A comment\n"
                                         "Name=before any group\n"
                                         "[Desktop Entry]\r\n"
                                         "Type = Application\r\n"
                                         "Name=Files\n"
                                         "Name[de]=Dateien\n"
                                         "Name[de_CH]=Dateie\n"
                                         "Name[fr]=Fichiers\n"
                                         "GenericName[xx]=nobody's\n"
                                         "Comment=two\\nlines\\sand \\\\ more\n"
                                         "Icon=files\n"
                                         "Exec=files --new \"a \\\\$ b\" %U\n"
                                         "Keywords=folder;a\\;b;;browser;\n"
                                         "Actions=new;gone;trash;new;\n"
                                         "StartupNotify=true\n"
                                         "Terminal=false\n"
                                         "DBusActivatable=TRUE\n"
                                         "[Desktop Action new]\n"
                                         "Name=New Window\n"
                                         "Name[de]=Neues Fenster\n"
                                         "Exec=files --new\n"
                                         "[Desktop Action trash]\n"
                                         "Exec=files trash:\n",
                                         "de_AT.UTF-8");
  ASSERT_TRUE(entry);
  EXPECT_EQ(entry->name, "Dateien");
  EXPECT_EQ(entry->genericName, "");
  EXPECT_EQ(entry->comment, "two\nlines and \\ more");
  EXPECT_EQ(entry->exec, "files --new \"a \\$ b\" %U");
  EXPECT_THAT(entry->keywords, ElementsAre("folder", "a;b", "browser"));
  ASSERT_EQ(entry->actions.size(), 1U) << "one is missing, one has no name, one is there twice";
  EXPECT_EQ(entry->actions[0].name, "Neues Fenster");
  EXPECT_EQ(entry->notifiesStartup, true);
  EXPECT_FALSE(entry->isActivatedOnBus) << "only \"true\" is true";
  EXPECT_TRUE(entry->isApplication());
}

TEST(DesktopEntry, BrokenFilesAreNoEntriesOrLoseTheLine) {
  EXPECT_FALSE(DesktopEntry::parse("", "de"));
  EXPECT_FALSE(DesktopEntry::parse("Name=x\n[Other]\nName=x\n", "de"));
  const std::string begin = "[Desktop Entry]\nType=Application\nExec=x\n";
  const auto name = [&](const std::string& lines) {
    return DesktopEntry::parse(begin + lines, "de")->name;
  };
  EXPECT_EQ(name("Name=x\nName[de]=\xFF\xFE\n"), "x") << "what is not UTF-8 does not count";
  EXPECT_EQ(name("Name=first\nName=second\n"), "first");
  EXPECT_EQ(name("Name[de=x\nName=y"), "y");
  EXPECT_EQ(name(std::string("Name=a\0b\n", 9)), "");
  EXPECT_EQ(name("Name=" + std::string(100'000, 'x') + "\nName=short\n"), "short");
  EXPECT_FALSE(DesktopEntry::parse(begin, "")->isApplication()) << "no name";
  EXPECT_FALSE(
      DesktopEntry::parse("[Desktop Entry]\nType=Link\nName=x\nExec=x\n", "")->isApplication());
}

TEST(DesktopEntry, MenusShowWhatTheirDesktopShows) {
  const std::tuple<const char*, const char*, bool> cases[] = {
      {"", "GNOME", true},
      {"NoDisplay=true\n", "GNOME", false},
      {"Hidden=true\n", "GNOME", false},
      {"OnlyShowIn=KDE;XFCE;\n", "GNOME", false},
      {"OnlyShowIn=KDE;XFCE;\n", "ubuntu:XFCE", true},
      {"OnlyShowIn=KDE;\n", "", false},
      {"NotShowIn=GNOME;\n", "ubuntu:GNOME", false},
      {"NotShowIn=GNOME;\n", "KDE", true},
  };
  for (const auto& [lines, desktops, isShown] : cases) {
    const auto entry = DesktopEntry::parse(
        std::string("[Desktop Entry]\nType=Application\nName=x\nExec=x\n") + lines, "");
    EXPECT_EQ(entry->isShownIn(desktops), isShown) << lines << desktops;
  }
}

TEST(DesktopEntry, CommandLinesBecomeWords) {
  const ExecFields fields{"My App", "my-icon", "/apps/my.desktop"};
  const std::pair<const char*, Words> cases[] = {
      {"", {}},
      {"   ", {}},
      {"app %U", {"app"}},
      {"app %f --x%%y", {"app", "--x%y"}},
      {"app %i", {"app", "--icon", "my-icon"}},
      {"app --caption %c", {"app", "--caption", "My App"}},
      {"app \"%c\" %k", {"app", "My App", "/apps/my.desktop"}},
      {"\"/opt/my tools/app\" \"a\\\"b\" \"c\\`\\$\\\\d\"",
       {"/opt/my tools/app", "a\"b", "c`$\\d"}},
      {"app \"\"", {"app", ""}},
      {"app a\\ b", {"app", "a b"}},
      {"sh -c \"echo \\\"$HOME\\\"\"", {"sh", "-c", "echo \"$HOME\""}},
      {"app %", {"app", "%"}},
      {"app %d%n%v%m%q", {"app"}},
      {"\"unclosed", {"unclosed"}},
  };
  for (const auto& [exec, words] : cases)
    EXPECT_EQ(execWords(exec, fields), words) << exec;
  EXPECT_EQ(execWords("app %i %c"), (Words{"app"})) << "fields that are empty are no words";
}

const char* const theme =
    "[Icon Theme]\nName=T\nInherits=parent,T, hicolor\n"
    "Directories=16/apps,48/apps,48@2/apps,scalable/apps,gone,../../etc,16/apps\n"
    "[16/apps]\nSize=16\nType=Fixed\n"
    "[48/apps]\nSize=48\n"
    "[48@2/apps]\nSize=48\nScale=2\n"
    "[scalable/apps]\nSize=64\nMinSize=56\nMaxSize=512\nType=Scalable\n"
    "[../../etc]\nSize=16\n";

TEST(IconTheme, ReadsItsFolders) {
  const auto parsed = IconTheme::parse(theme);
  EXPECT_THAT(parsed.inherits, ElementsAre("parent", "T", "hicolor"));
  ASSERT_EQ(parsed.folders.size(), 4U) << "no folder outside, none twice, none without a group";
  EXPECT_EQ(parsed.folders[3].maximumSize, 512);
  EXPECT_TRUE(parsed.folders[1].suits(50, 1)) << "two points to either side by default";
  EXPECT_FALSE(parsed.folders[1].suits(51, 1));
  EXPECT_FALSE(parsed.folders[1].suits(48, 2));
  EXPECT_FALSE(parsed.folders[0].suits(17, 1));
  EXPECT_EQ(parsed.folders[3].distance(24, 2), 8);
  EXPECT_TRUE(IconTheme::parse("[Icon Theme]\nDirectories=a\n[a]\nSize=0\n").folders.empty());
  EXPECT_TRUE(IconTheme::parse("[Icon Theme]\nDirectories=a\n[a]\nSize=-1\n").folders.empty());
}

/// Looks for `name` where the files named lie.
std::string found(const std::set<std::string>& files, const std::string& name, int points,
                  int scale = 1) {
  IconSources sources;
  sources.folders = {"/mine", "/sys"};
  sources.theme = [](const std::string& each) -> std::optional<IconTheme> {
    if (each == "T")
      return IconTheme::parse(theme);
    if (each == "parent")
      return IconTheme::parse("[Icon Theme]\nInherits=T\nDirectories=a\n[a]\nSize=32\n");
    if (each == "hicolor")
      return IconTheme::parse("[Icon Theme]\nDirectories=48x48/apps\n[48x48/apps]\nSize=48\n");
    return std::nullopt;
  };
  sources.exists = [&](const auto& path) { return files.contains(path.string()); };
  const auto file = findIcon(name, points, scale, "T", sources);
  return file ? file->string() : std::string();
}

TEST(IconTheme, FindsTheBestFile) {
  const std::string small = "/sys/T/16/apps/x.png";
  const std::string large = "/sys/T/48/apps/x.png";
  const std::string vector = "/sys/T/scalable/apps/x.svg";
  EXPECT_EQ(found({small, large, vector}, "x", 48), large);
  EXPECT_EQ(found({small, large, vector}, "x", 16), small);
  EXPECT_EQ(found({small, large, vector}, "x", 200), vector);
  EXPECT_EQ(found({small, "/mine/T/48@2/apps/x.png", large}, "x", 48, 2),
            "/mine/T/48@2/apps/x.png");
  EXPECT_EQ(found({small}, "x", 128), small) << "better a small one than another theme's";
  EXPECT_EQ(found({"/mine/T/48/apps/x.png", large}, "x", 48), "/mine/T/48/apps/x.png");
  EXPECT_EQ(found({"/sys/parent/a/x.png", "/sys/hicolor/48x48/apps/x.png"}, "x", 48),
            "/sys/parent/a/x.png");
  EXPECT_EQ(found({"/sys/hicolor/48x48/apps/x.png", "/sys/x.png"}, "x", 48),
            "/sys/hicolor/48x48/apps/x.png");
  EXPECT_EQ(found({"/sys/x.xpm"}, "x", 48), "/sys/x.xpm");
  EXPECT_EQ(found({large}, "x.png", 48), large) << "an ending that should not be there";
  EXPECT_EQ(found({"/opt/pic"}, "/opt/pic", 48), "/opt/pic");
  for (const char* name : {"", "..", "../x", "a/../../x", "nobody", "/opt/none"})
    EXPECT_EQ(found({large, "/x.png", "/sys/x.png"}, name, 48), "") << name;
}

} // namespace
} // namespace tavrin
