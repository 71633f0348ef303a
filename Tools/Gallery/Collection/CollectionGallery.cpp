#include "TavrinCore/Kinds/Collection/CollectionSettings.h"
#include "TavrinSettings/Samples/SampleValues.h"
#include "TavrinWidgetsUI/Collection/CollectionPanelView.h"
#include "TavrinWidgetsUI/Collection/CollectionViews.h"
#include "TavrinWidgetsUI/Kit/Views/ViewRenderer.h"
#include "Tests/Support/FakeApplicationLibrary.h"
#include "Tests/Support/ManualRunLoop.h"
#include "Tools/Gallery/Gallery.h"

#include <memory>

namespace tavrin {
namespace {

const std::vector<std::string> names = {
    "Firefox", "Terminal", "Files",
    "Mail",    "Calendar", "Text Editor",
    "Music",   "Photos",   "LibreOffice Writer with a long name",
    "Maps",    "Weather",  "Calculator"};

std::vector<CollectionTileApp> appsOf(std::size_t count, bool areGone = false) {
  std::vector<CollectionTileApp> apps;
  for (std::size_t i = 0; i < count; ++i)
    apps.push_back({QString::fromStdString(names[i % names.size()]),
                    areGone && i % 2 == 0 ? QImage() : samples::applicationIcon(i, 128),
                    areGone && i % 2 == 0});
  return apps;
}

/// A library, and a model on it, that live as long as the program.
struct Stage {
  test::ManualClock clock{Date{800'000'000}};
  test::ManualRunLoop loop{clock};
  test::FakeApplicationLibrary library{loop};
  std::unique_ptr<CollectionModel> model;
};

CollectionModel& modelOf(std::size_t count, CollectionLayout layout, bool isChoosing,
                         const std::string& trouble = {}) {
  static std::vector<std::unique_ptr<Stage>> stages;
  stages.push_back(std::make_unique<Stage>());
  Stage& stage = *stages.back();
  CollectionSettings settings{{}, layout};
  for (std::size_t i = 0; i < names.size(); ++i) {
    auto info = test::FakeApplicationLibrary::app(names[i], {{"new", "New Window"}});
    info.genericName = i % 3 == 1 ? "" : "A kind of app";
    if (i < count)
      settings.apps.push_back({info.path, info.id, info.name, std::nullopt});
    if (i != 2)
      stage.library.installed.push_back(info);
  }
  stage.library.trouble = trouble;
  stage.model = std::make_unique<CollectionModel>(
      stage.library, DockWidget(UUID::random(), "Everyday", 1, settings, 1),
      [](const CollectionSettings&) {});
  stage.loop.advance(1);
  if (isChoosing)
    stage.model->beginChoosing();
  if (!trouble.empty())
    stage.model->open(0);
  stage.loop.advance(1);
  return *stage.model;
}

GalleryPanel panelOf(const char* name, std::size_t count, CollectionLayout layout,
                     bool isChoosing = false, const std::string& trouble = {}) {
  return {name, collectionTint, [=](const PanelAppearance& look) {
            return new CollectionPanelView(look, modelOf(count, layout, isChoosing, trouble),
                                           [] {});
          }};
}

} // namespace

GallerySheet collectionGallery() {
  GallerySheet sheet;
  const auto show = [&](const char* name, std::size_t count, CollectionLayout layout,
                        bool areGone = false) {
    for (const int span : {1, 2, 3, 4})
      sheet.push_back({name, span, [=](const TileSize& size) {
                         const auto apps = appsOf(count, areGone);
                         return size.isWide()
                                    ? collectionWideTile(
                                          apps, layout, size, "Everyday", [](std::size_t) {}, [] {})
                                    : collectionTileIcon(apps, layout, size, "Everyday");
                       }});
  };
  show("none", 0, CollectionLayout::grid);
  for (const std::size_t count : {1U, 2U, 4U, 5U, 9U, 12U})
    show("grid", count, CollectionLayout::grid);
  for (const std::size_t count : {1U, 3U, 12U}) {
    show("horizontal", count, CollectionLayout::horizontal);
    show("vertical", count, CollectionLayout::vertical);
  }
  show("gone", 5, CollectionLayout::grid, true);
  return sheet;
}

GalleryPanels collectionPanels() {
  return {panelOf("empty", 0, CollectionLayout::grid),
          panelOf("grid", 9, CollectionLayout::grid),
          panelOf("many", 12, CollectionLayout::vertical),
          panelOf("row", 3, CollectionLayout::horizontal),
          panelOf("choosing", 3, CollectionLayout::grid, true),
          panelOf("trouble", 1, CollectionLayout::grid, false,
                  "Failed to open Firefox because its program cannot be run")};
}

const GalleryEntry collectionEntries[] = {{"collection", collectionGallery},
                                          {"collection-panels", collectionPanels}};

} // namespace tavrin
