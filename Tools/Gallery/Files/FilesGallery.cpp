#include "TavrinCore/Kinds/Files/ShelfSettings.h"
#include "TavrinSettings/Samples/SampleValues.h"
#include "TavrinWidgetsUI/Files/FileViews.h"
#include "TavrinWidgetsUI/Files/FilesPanelView.h"
#include "TavrinWidgetsUI/Files/ScreenshotPanelView.h"
#include "TavrinWidgetsUI/Files/ScreenshotViews.h"
#include "TavrinWidgetsUI/Files/ShelfPanelView.h"
#include "TavrinWidgetsUI/Files/ShelfViews.h"
#include "Tests/Support/FakePlatform.h"
#include "Tools/Gallery/Gallery.h"

#include <QApplication>
#include <QKeyEvent>
#include <QListView>
#include <QPainter>
#include <QTimer>
#include <fstream>

namespace tavrin {
namespace {

namespace fs = std::filesystem;
using FolderState = FolderListing::State;

using samples::screen;

QImage small(int variety, QSize size = {1280, 800}) {
  return samples::smallScreen(variety, size);
}

ScreenshotReading shots(int count) {
  ScreenshotReading reading{true, FolderState::listed, {}};
  for (int i = 0; i < count; ++i)
    reading.shots.push_back({small(i, i == 2 ? QSize(400, 900) : QSize(1280, 800)),
                             "Screenshot " + std::to_string(i) + ".png", "14:05", false});
  return reading;
}

FileSheet sheet(const char* name, const QImage& picture = {}, bool isFolder = false) {
  return fileSheet(fs::path("/x") / name, isFolder, picture);
}

FilesReading files(std::size_t unseen, const std::vector<const char*>& names,
                   std::size_t unfinished = 0) {
  FilesReading reading{true, false, unseen, unfinished, {}, false};
  for (const char* name : names)
    reading.files.push_back({sheet(name), name, "14:05", "3.1 MB"});
  return reading;
}

ShelfReading shelfOf(std::vector<FileSheet> sheets, std::size_t missing = 0) {
  const auto count = sheets.size();
  return {count, missing, std::move(sheets)};
}

FileSheet missingSheet() {
  FileSheet gone = sheet("gone.txt");
  gone.isMissing = true;
  return gone;
}

} // namespace

GallerySheet filesGallery() {
  GallerySheet all;
  const auto shot = [&](const char* name, const ScreenshotReading& reading) {
    all.push_back(
        {name, 1, [=](const TileSize& size) { return screenshotTileIcon(reading, size); }});
  };
  shot("looking", {});
  shot("no shots", {true, FolderState::listed, {}});
  shot("missing", {true, FolderState::missing, {}});
  shot("newest", shots(1));
  ScreenshotReading tall{
      true, FolderState::listed, {{small(3, {400, 900}), "tall", "14:05", false}}};
  shot("tall", tall);
  shot("being made", {true, FolderState::listed, {{{}, "new", "14:05", false}}});
  shot("broken", {true, FolderState::listed, {{{}, "new", "14:05", true}}});
  const auto file = [&](const char* name, const FilesReading& reading) {
    all.push_back({name, 1, [=](const TileSize& size) { return filesTileIcon(reading, size); }});
  };
  file("files looking", {});
  file("none", files(0, {}));
  file("trouble", {true, true, 0, 0, {}, false});
  file("pdf", files(0, {"plan.pdf", "b.zip", "c.txt"}));
  file("3 new", files(3, {"song.flac", "b.zip"}));
  file("200 new", files(200, {"table.ods", "b", "c"}));
  auto listedOnes = files(20, {"table.ods", "b", "c"});
  listedOnes.hasMoreUnseen = true;
  file("20+ new", listedOnes);
  file("downloading", files(1, {"setup.deb", "b", "c"}, 1));
  file("only loading", files(0, {}, 2));
  auto photo = files(2, {"a.png", "b", "c"});
  photo.files.front().sheet = sheet("a.png", small(4));
  file("picture", photo);
  file("no ending", files(0, {"README"}));
  file("code", files(0, {"main.cpp", "a"}));
  const auto shelf = [&](const char* name, const ShelfReading& reading) {
    all.push_back({name, 1, [=](const TileSize& size) { return shelfTileIcon(reading, size); }});
  };
  shelf("shelf empty", {});
  shelf("one", shelfOf({sheet("plan.pdf")}));
  shelf("two", shelfOf({sheet("plan.pdf"), sheet("a.png", small(2))}));
  shelf("folder", shelfOf({sheet("Tavrin", {}, true)}));
  ShelfReading many = shelfOf({sheet("a.zip"), sheet("song.mp3")});
  many.count = 40;
  shelf("40", many);
  shelf("one gone", shelfOf({missingSheet(), sheet("b.txt")}, 1));
  shelf("gone", shelfOf({missingSheet()}, 1));
  return all;
}

GallerySheet filesWideGallery() {
  GallerySheet all;
  const auto shot = [&](const char* name, int span, const ScreenshotReading& reading) {
    all.push_back({name, span, [=](const TileSize& size) {
                     return screenshotWideTile(reading, size, [](std::size_t) {});
                   }});
  };
  shot("looking", 3, {});
  shot("no shots", 3, {true, FolderState::listed, {}});
  shot("missing", 2, {true, FolderState::missing, {}});
  shot("unreadable", 4, {true, FolderState::unreadable, {}});
  shot("shots", 2, shots(6));
  shot("shots", 3, shots(6));
  shot("shots", 4, shots(6));
  shot("one shot", 3, shots(1));
  const auto file = [&](const char* name, int span, const FilesReading& reading) {
    all.push_back(
        {name, span, [=](const TileSize& size) { return filesWideTile(reading, size, [] {}); }});
  };
  file("files looking", 3, {});
  file("none", 3, files(0, {}));
  file("trouble", 2, {true, true, 0, 0, {}, false});
  file("newest", 2, files(0, {"Harbour plan.pdf"}));
  file("newest", 3, files(3, {"Harbour plan (final version, signed).pdf", "b"}));
  file("newest", 4, files(120, {"Harbour plan (final version, signed).pdf", "b", "c"}));
  file("downloading", 3, files(1, {"song.flac"}, 2));
  const auto shelf = [&](const char* name, int span, const ShelfReading& reading) {
    all.push_back({name, span, [=](const TileSize& size) { return shelfWideTile(reading, size); }});
  };
  shelf("shelf empty", 2, {});
  shelf("shelf empty", 3, {});
  const auto some = shelfOf({sheet("plan.pdf"), sheet("a.png", small(2)), missingSheet(),
                             sheet("Tavrin", {}, true), sheet("a.zip"), sheet("b.cpp")},
                            1);
  for (const int span : {2, 3, 4})
    shelf("some", span, some);
  shelf("one", 3, shelfOf({sheet("song.mp3")}));
  return all;
}

namespace {

/// A folder of real files, and the services that panels need, kept for the process.
struct Rig {
  Rig() {
    folder = fs::temp_directory_path() / ("tavrin-gallery-" + UUID::random().text());
    fs::create_directories(folder);
  }
  ~Rig() { fs::remove_all(folder); }

  FolderFile add(const std::string& name, double ago, std::uint64_t size) {
    return {folder / name, galleryNow - ago, size, false};
  }
  FolderFile addPicture(const std::string& name, int variety, double ago) {
    screen(variety, variety == 2 ? QSize(500, 900) : QSize(1280, 800))
        .save(QString::fromStdString(folder / name));
    return add(name, ago, 240'000 + static_cast<std::uint64_t>(variety) * 17'311);
  }
  void settle() {
    do {
      platform.loop.runBackground();
      QApplication::processEvents();
    } while (platform.loop.waitingBackground() > 0);
  }

  test::FakePlatform platform{galleryNow};
  fs::path folder;
  std::unique_ptr<ScreenshotRoll> shots;
  std::unique_ptr<FileRoll> files;
  std::unique_ptr<ShelfModel> shelf;
};

Rig& newRig() {
  static std::vector<std::unique_ptr<Rig>> kept;
  kept.push_back(std::make_unique<Rig>());
  return *kept.back();
}

const fs::path home = "/home/user";
const auto ignore = [](const fs::path&) {};

GalleryPanel shotsPanel(const char* name, int count, FolderState state = FolderState::listed,
                        bool isKnown = true) {
  return {name, screenshotTint, [=](const PanelAppearance& look) -> PanelView* {
            Rig& rig = newRig();
            rig.shots = std::make_unique<ScreenshotRoll>(
                rig.platform.folders, rig.platform.fakeUserFiles, rig.platform.loop);
            rig.shots->setSettings({});
            rig.settle();
            FolderListing listing{{{home / "Pictures/Screenshots", state}}, {}, 0};
            for (int i = 0; i < count; ++i)
              listing.files.push_back(
                  rig.addPicture("Screenshot from 2026-09-09 14-0" + std::to_string(i) + "-17.png",
                                 i, i * 9000.0));
            if (count > 3)
              listing.files.push_back(rig.add("broken.png", 900'000, 12));
            if (isKnown)
              rig.platform.folders.tell(listing);
            auto* panel = new ScreenshotPanelView(look, *rig.shots,
                                                  {.clock = rig.platform.fakeClock,
                                                   .home = home,
                                                   .name = [] { return QString("Screenshots"); },
                                                   .open = ignore,
                                                   .copy = ignore,
                                                   .reveal = ignore,
                                                   .moveToTrash = ignore,
                                                   .edit = [] {},
                                                   .trouble = [] { return QString(); }});
            rig.shots->onChange = [panel] { panel->refresh(); };
            for (const FolderFile& file : listing.files)
              rig.shots->picture(file);
            rig.settle();
            rig.shots->onChange = nullptr;
            return panel;
          }};
}

GalleryPanel filesPanel(const char* name, int count, FolderState state = FolderState::listed,
                        std::size_t unfinished = 0, std::vector<std::string> folders = {}) {
  return {
      name, filesTint, [=](const PanelAppearance& look) -> PanelView* {
        Rig& rig = newRig();
        rig.files = std::make_unique<FileRoll>(rig.platform.folders, rig.platform.fakeUserFiles,
                                               rig.platform.loop);
        rig.files->setSettings({folders, 20, true, galleryNow - 4000});
        rig.settle();
        FolderListing listing{{{home / "Downloads", state}}, {}, unfinished};
        if (folders.size() > 1)
          listing.folders.push_back({home / "Desktop", FolderState::listed});
        std::vector<FolderFile> all{
            rig.add("Harbour plan (final version, signed by all three of them).pdf", 60, 2'413'000),
            rig.addPicture("Harbour.png", 1, 900),
            rig.add("tide-tables-2027.ods", 3000, 48'200),
            rig.add("Grüße aus Ærøskøbing 你好.txt", 80'000, 812),
            rig.add("line\nbreak \xFF.zip", 160'000, 81'000'000'000),
            rig.add("setup", 400'000, 0),
            rig.add("Concert.flac", 500'000, 42'000'000),
            rig.add("film.mkv", 600'000, 4'200'000'000),
            rig.add("main.cpp", 700'000, 4'200),
            rig.add("slides.odp", 800'000, 42'000),
            rig.add("package.deb", 900'000, 9'000'000)};
        for (int i = 0; i < count; ++i)
          listing.files.push_back(all[static_cast<std::size_t>(i)]);
        rig.platform.folders.tell(listing);
        for (const FolderFile& file : listing.files)
          rig.files->picture(file);
        rig.settle();
        return new FilesPanelView(
            look, *rig.files,
            {.clock = rig.platform.fakeClock,
             .home = home,
             .name = [] { return QString("Downloads"); },
             .open = ignore,
             .copy = ignore,
             .reveal = ignore,
             .moveToTrash = ignore,
             .undoable = [count] { return count == 11 ? QString("plan.pdf") : QString(); },
             .edit = [] {},
             .trouble =
                 [count] {
                   return count == 3 ? QString("Failed to move setup to the trash because its disk "
                                               "has none")
                                     : QString();
                 }});
      }};
}

GalleryPanel shelfPanel(const char* name, int count, int look = -1) {
  return {
      name, shelfTint, [=](const PanelAppearance& appearance) -> PanelView* {
        Rig& rig = newRig();
        rig.shelf = std::make_unique<ShelfModel>(rig.platform.folders, rig.platform.loop);
        std::vector<FolderFile> all{
            rig.add("Harbour plan (final version, signed by all three of them).pdf", 60, 2'413'000),
            rig.addPicture("Harbour.png", 1, 900), rig.add("notes.md", 3000, 812),
            rig.add("Tavrin", 80'000, 0), rig.add("gone.txt", 80'000, 0)};
        all[3].isFolder = true;
        std::ofstream(rig.folder / "notes.md")
            << "# Tides\n\nThe ferry leaves twice on Sundays, at a quarter past ten and at "
               "half past four, unless the wind is above seven.\n\n- bring the charts\n- ask "
               "Ada about the key\n";
        ShelfSettings settings;
        FolderListing listing{{{rig.folder, FolderState::listed}}, {}, 0};
        for (int i = 0; i < count; ++i) {
          settings.paths.push_back(all[static_cast<std::size_t>(i)].path.native());
          if (i != 4)
            listing.files.push_back(all[static_cast<std::size_t>(i)]);
        }
        rig.shelf->setSettings(settings);
        rig.settle();
        rig.platform.folders.tell(listing);
        for (const ShelfItem& item : rig.shelf->items())
          rig.shelf->picture(item);
        rig.settle();
        auto* panel =
            new ShelfPanelView(appearance, *rig.shelf,
                               {rig.platform.loop, rig.platform.fakeClock, rig.folder.parent_path(),
                                [] { return QString("Shelf"); }, ignore, [](const auto&) {}, ignore,
                                ignore, [] {}, [] {}});
        if (look >= 0)
          QTimer::singleShot(0, panel, [panel, look, &rig] {
            auto* list = panel->findChild<QListView*>();
            list->setCurrentIndex(list->model()->index(look, 0));
            QKeyEvent space(QEvent::KeyPress, Qt::Key_Space, {});
            QApplication::sendEvent(list, &space);
            rig.settle();
          });
        return panel;
      }};
}

} // namespace

GalleryPanels filesPanels() {
  return {shotsPanel("screenshots", 8),
          shotsPanel("two", 2),
          shotsPanel("none", 0),
          shotsPanel("missing", 0, FolderState::missing),
          shotsPanel("unreadable", 0, FolderState::unreadable),
          shotsPanel("looking", 0, FolderState::listed, false),
          filesPanel("files", 11),
          filesPanel("several folders", 5, FolderState::listed, 2, {"~/Downloads", "~/Desktop"}),
          filesPanel("failed", 3),
          filesPanel("none", 0),
          filesPanel("downloading", 0, FolderState::listed, 1),
          filesPanel("missing", 0, FolderState::missing),
          filesPanel("unreadable", 0, FolderState::unreadable),
          shelfPanel("shelf", 5),
          shelfPanel("empty", 0),
          shelfPanel("picture", 5, 1),
          shelfPanel("text", 5, 2),
          shelfPanel("no look", 5, 0)};
}

const GalleryEntry filesEntries[] = {
    {"files", filesGallery}, {"files-wide", filesWideGallery}, {"files-panels", filesPanels}};

} // namespace tavrin
