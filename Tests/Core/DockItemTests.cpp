#include "TavrinCore/Dock/DockChangeDetector.h"
#include "TavrinCore/Dock/DockSwapper.h"
#include "TavrinCore/Dock/DockTileMapping.h"
#include "TavrinCore/Dock/DockURLString.h"
#include "TavrinCore/Dock/DownloadsTile.h"

#include <deque>
#include <gtest/gtest.h>

namespace tavrin {
namespace {

using Dictionary = PropertyList::Dictionary;

const std::filesystem::path plist = "/home/u/Library/Preferences/com.apple.dock.plist";

Dictionary address(const char* text, int type = 15) {
  return {{"_CFURLString", text}, {"_CFURLStringType", type}};
}

Dictionary tile(const char* type, Dictionary data) {
  return {{"tile-type", type}, {"tile-data", std::move(data)}, {"GUID", 4711}};
}

DockItem app(const char* path) {
  return {AppEntry{path, {}, {}, {}}};
}
DockItem spacer(SpacerVariant variant) {
  return {variant};
}

std::string faultOf(const Dictionary& one, DockSection section = DockSection::apps) {
  try {
    decodeItem(one, section, plist);
  } catch (const DockError& error) {
    return error.what();
  }
  return {};
}

TEST(DockURLString, LeadsFromAddressToPathAndBack) {
  const std::tuple<const char*, const char*> paths[] = {
      {"file:///Applications/Mail.app/", "/Applications/Mail.app"},
      {"file://localhost/a%20b/%C3%A4", "/a b/ä"},
      {"file:///a%zz", "file:///a%zz"},
      {"file:///a%00b", "file:///a%00b"},
      {"file:///a%FFb", "file:///a%FFb"},
      {"file:///", "/"},
      {"/", "/"},
      {"//", "/"},
      {"/plain/path//", "/plain/path"},
      {"", ""},
  };
  for (const auto& [text, path] : paths)
    EXPECT_EQ(DockURLString::path(text), path) << text;
  EXPECT_EQ(DockURLString::fileURLString("/a b/ä#?;%", true), "file:///a%20b/%C3%A4%23%3F%3B%25/");
  EXPECT_EQ(DockURLString::fileURLString("/x", false), "file:///x");
  EXPECT_EQ(DockURLString::fileURLString("/", true), "file:///");
}

TEST(DockTileMapping, ReadsEachTypeByItsSection) {
  const auto file = tile("file-tile", {{"file-data", Dictionary(address("file:///a/M.app/"))},
                                       {"file-label", "M"},
                                       {"bundle-identifier", "com.m"}});
  const auto asApp = decodeItem(file, DockSection::apps, plist);
  ASSERT_NE(asApp.app(), nullptr);
  EXPECT_EQ(asApp.app()->path, "/a/M.app");
  EXPECT_EQ(asApp.app()->bundleIdentifier, "com.m");
  EXPECT_EQ(PropertyList::parse(asApp.app()->tile->view()), PropertyList(file));
  const auto asFile = decodeItem(file, DockSection::others, plist);
  ASSERT_NE(asFile.file(), nullptr);
  EXPECT_FALSE(asFile.file()->isDirectory);
  const auto folder = tile("directory-tile", {{"file-data", Dictionary(address("file:///d"))}});
  EXPECT_TRUE(decodeItem(folder, DockSection::apps, plist).file()->isDirectory);
  const auto link = tile("url-tile", {{"url", Dictionary(address("HTTP://X/"))}, {"label", 5}});
  EXPECT_EQ(decodeItem(link, DockSection::others, plist).url()->url, "HTTP://X/");
  EXPECT_EQ(decodeItem(link, DockSection::others, plist).displayName(), "HTTP://X/");
}

TEST(DockTileMapping, NamesTheFaultOfATile) {
  const std::string start = "Failed to decode dock plist at " + plist.string() + " because ";
  EXPECT_EQ(faultOf({}), start + "tile is missing tile-type");
  EXPECT_EQ(faultOf({{"tile-type", 7}}), start + "tile is missing tile-type");
  EXPECT_EQ(faultOf(tile("recents-tile", {})),
            "Failed to handle dock item of type recents-tile because it is not supported");
  const std::string appFault = start + "app tile is missing tile-data.file-data._CFURLString";
  EXPECT_EQ(faultOf({{"tile-type", "file-tile"}}), appFault);
  EXPECT_EQ(faultOf({{"tile-type", "file-tile"}, {"tile-data", 1}}), appFault);
  EXPECT_EQ(faultOf(tile("file-tile", {{"file-data", "text"}})), appFault);
  EXPECT_EQ(faultOf(tile("file-tile", {{"file-data", Dictionary{{"_CFURLString", 1}}}})), appFault);
  EXPECT_EQ(faultOf(tile("directory-tile", {})),
            start + "file tile is missing tile-data.file-data._CFURLString");
  EXPECT_EQ(faultOf(tile("url-tile", {})),
            start + "url tile is missing tile-data.url._CFURLString");
}

TEST(DockTileMapping, KeepsKeysItDoesNotKnowButNotTheGUID) {
  auto original = tile("directory-tile", {{"file-data", Dictionary(address("/d/", 0))},
                                          {"arrangement", 2},
                                          {"preferreditemsize", -1},
                                          {"book", Data{{1, 2}}}});
  original["extra"] = 2.5;
  const auto written = encodeItem(decodeItem(original, DockSection::others, plist));
  auto expected = original;
  expected.erase("GUID");
  auto& data = *expected["tile-data"].dictionary();
  data["file-data"] = address("file:///d/");
  data["file-label"] = "d";
  data["file-type"] = 2;
  data["displayas"] = 0;
  data["showas"] = 0;
  EXPECT_EQ(PropertyList(written), PropertyList(expected));
}

TEST(DockTileMapping, IgnoresAKeptTileOfAnotherPlace) {
  const auto kept = PropertyList(tile("file-tile", {{"file-data", Dictionary(address("file:///x"))},
                                                    {"bundle-identifier", "com.x"}}))
                        .binary();
  const auto data = [](const DockItem& item) { return encodeItem(item).at("tile-data"); };
  const DockItem same{AppEntry{"/x", {}, {}, kept}};
  EXPECT_EQ(*data(same).entry("bundle-identifier")->string(), "com.x");
  for (const auto& bytes : {kept, Data::fromText("no list"), PropertyList(5).binary()})
    EXPECT_EQ(data({AppEntry{"/y", {}, {}, bytes}}).entry("bundle-identifier"), nullptr);
}

TEST(DockTileMapping, WritesNewItems) {
  EXPECT_EQ(
      PropertyList(encodeItem(spacer(SpacerVariant::small))),
      PropertyList(Dictionary{{"tile-type", "small-spacer-tile"}, {"tile-data", Dictionary{}}}));
  const auto folder = encodeItem({FileEntry{"/d", {}, true, {}, "#fff"}});
  const Dictionary data{{"file-data", Dictionary(address("file:///d/"))},
                        {"file-label", "d"},
                        {"file-type", 2},
                        {"arrangement", 1},
                        {"displayas", 0},
                        {"showas", 0}};
  EXPECT_EQ(folder.at("tile-data"), PropertyList(data));
  const FolderOptions options{FolderOptions::Arrangement::kind, {}, FolderOptions::View::list};
  const auto entry = withFolderOptions({"/d", {}, true, {}, {}}, options);
  EXPECT_EQ(*encodeItem({entry}).at("tile-data").entry("showas")->integer(), 3);
  EXPECT_EQ(folderOptions(entry),
            (FolderOptions{options.arrangement, FolderOptions::Display::stack, options.view}));
}

TEST(DockItem, HasOneKeyInJSON) {
  const DockItem items[] = {app("/a"),
                            spacer(SpacerVariant::standard),
                            {FileEntry{"/f", "F", true, Data{{1}}, "#fff"}},
                            {URLEntry{"x:y", {}, {}}}};
  for (const auto& item : items)
    EXPECT_EQ(decode<DockItem>(encode(item)), item);
  EXPECT_EQ(encode(items[1]).compact(), R"({"spacer":{"_0":"spacer-tile"}})");
  const auto newer = JSONValue::parse(R"({"file":{"_0":{"path":"/f","future":{"a":[1.0]}}}})");
  auto kept = newer;
  kept.object()->at("file").object()->at("_0").object()->emplace("isDirectory", false);
  EXPECT_EQ(encode(decode<DockItem>(newer)), kept);
  for (const auto* text :
       {"{}", R"({"app":{"_0":{"path":"/"}},"url":{}})", R"({"robot":{"_0":1}})",
        R"({"app":{"_0":{}}})", R"({"app":{}})", R"({"spacer":{"_0":"wide"}})", "[]", "5"})
    EXPECT_THROW(decode<DockItem>(JSONValue::parse(text)), CodingError) << text;
}

TEST(DockItem, NamesItselfByItsLastPart) {
  EXPECT_EQ(app("/Applications/Mail.app").displayName(), "Mail.app");
  EXPECT_EQ((DockItem{FileEntry{"/d", "Named", false, {}, {}}}.displayName()), "Named");
  EXPECT_EQ(spacer(SpacerVariant::flex).displayName(), "Flex spacer");
}

TEST(DockChangeDetector, ComparesPlacesOnly) {
  const auto diff = [](std::vector<DockItem> a, std::vector<DockItem> b) {
    return DockChangeDetector::diff({std::move(a), {}, {}}, {std::move(b), {}, {}});
  };
  EXPECT_FALSE(diff({app("/a"), app("/b")}, {app("/a"), app("/b")}).hasChanges());
  EXPECT_FALSE(diff({{AppEntry{"/a", "id", "A", {}}}}, {app("/a")}).hasChanges());
  const auto moved = diff({app("/a"), app("/b")}, {app("/b"), app("/a")});
  EXPECT_TRUE(moved.reordered && moved.added.empty() && moved.removed.empty());
  const auto replaced = diff({app("/a"), app("/b")}, {app("/c"), app("/b")});
  EXPECT_EQ(replaced, (DockChangeDetector::Report{{app("/c")}, {app("/a")}, false}));
  const auto side = DockChangeDetector::diff({{app("/a")}, {}, {}}, {{}, {app("/a")}, {}});
  EXPECT_EQ(side, (DockChangeDetector::Report{{app("/a")}, {app("/a")}, false}));
  const auto one = spacer(SpacerVariant::small);
  EXPECT_TRUE(diff({one, app("/a")}, {one, app("/a"), one}).added.empty());
  EXPECT_FALSE(diff({spacer(SpacerVariant::flex)}, {one}).added.empty());
}

TEST(DownloadsTile, IsAddedOnce) {
  const DownloadsTile tileOfUser({}, "/home/u");
  EXPECT_EQ(tileOfUser.path, "/home/u/Downloads");
  const auto items = tileOfUser.adding(tileOfUser.adding({app("/a")}));
  EXPECT_EQ(items.size(), 2U);
  EXPECT_TRUE(tileOfUser.is("/home/u/Downloads/"));
  EXPECT_EQ(tileOfUser.removing(items), std::vector{app("/a")});
}

/// A Dock that writes its own items over the new ones as often as it is told to.
struct StubbornDock final : DockPreferencesBackend, DockReloader {
  std::filesystem::path url() const override { return plist; }
  DockTiles readTiles() override { return tiles; }
  void writeTiles(const DockTiles& written) override {
    steps += "w";
    tiles = written;
  }
  void waitUntilSettled() override { steps += "s"; }
  void reload() override {
    steps += "r";
    if (fault)
      throw DockError::dockReloadFailed("the Dock did not relaunch");
    if (stubbornness-- > 0)
      tiles = {};
  }
  DockTiles tiles;
  int stubbornness = 0;
  bool fault = false;
  std::string steps;
};

TEST(DockSwapper, WritesRestartsAndTriesOnceMore) {
  struct Case {
    int stubbornness;
    bool fault;
    const char* steps;
    const char* sentence;
  };
  for (const Case& one :
       {Case{0, false, "swr", ""}, Case{1, false, "swrswr", ""},
        Case{9, false, "swrswr",
             "Failed to reload dock because the Dock kept its previous items; try again"},
        Case{0, true, "swr", "Failed to reload dock because the Dock did not relaunch"}}) {
    auto dock = std::make_shared<StubbornDock>();
    dock->stubbornness = one.stubbornness;
    dock->fault = one.fault;
    std::string sentence;
    try {
      DockSwapper::over(dock, dock).swap({{app("/a")}, {}, {}});
    } catch (const DockError& error) {
      sentence = error.what();
    }
    EXPECT_EQ(dock->steps, one.steps);
    EXPECT_EQ(sentence, one.sentence);
  }
}

} // namespace
} // namespace tavrin
