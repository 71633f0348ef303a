#include "TavrinCore/Kinds/AirDrop/AirDropSettings.h"
#include "TavrinWidgetsUI/AirDrop/AirDropPanelView.h"
#include "TavrinWidgetsUI/AirDrop/AirDropViews.h"
#include "Tests/Support/FakeNearbyDevices.h"
#include "Tests/Support/ManualRunLoop.h"
#include "Tools/Gallery/Gallery.h"

#include <QDir>
#include <fstream>
#include <memory>

namespace tavrin {
namespace {

using AirDropState = AirDropModel::State;

struct Stage {
  test::ManualClock clock{Date{800'000'000}};
  test::ManualRunLoop loop{clock};
  test::FakeNearbyDevices nearby;
  std::unique_ptr<AirDropModel> model;
};

std::vector<NearbyDevice> devices() {
  return {{"a", "Ada's Phone", NearbyDevice::Kind::phone, "KDE Connect"},
          {"b", "Kitchen Tablet with a rather long name of its own", NearbyDevice::Kind::tablet,
           "KDE Connect"},
          {"c", "Workshop Laptop", NearbyDevice::Kind::computer, "Bluetooth"}};
}

std::string sampleFile(const std::string& name) {
  const auto path = QDir::temp().filePath(QString::fromStdString("tavrin-gallery-" + name));
  std::ofstream(path.toStdString()) << std::string(123'456, 'x');
  return "file://" + path.toStdString();
}

GalleryPanel panelOf(const char* name, bool hasDevices, std::size_t files, AirDropState state,
                     bool isAvailable = true) {
  return {name, airDropTint, [=](const PanelAppearance& look) {
            static std::vector<std::unique_ptr<Stage>> stages;
            stages.push_back(std::make_unique<Stage>());
            Stage& stage = *stages.back();
            stage.nearby.available = isAvailable;
            if (hasDevices)
              stage.nearby.all = devices();
            stage.model = std::make_unique<AirDropModel>(
                stage.nearby, stage.loop,
                DockWidget(UUID::random(), "AirDrop", 1, AirDropSettings{}, 1));
            std::vector<std::string> urls;
            for (std::size_t i = 0; i < files; ++i)
              urls.push_back(sampleFile("holiday-" + std::to_string(i) + ".jpg"));
            if (files > 0) {
              stage.model->take(urls);
              stage.loop.runBackground();
            }
            if (state != AirDropState::idle && state != AirDropState::choosing) {
              stage.model->send(stage.nearby.all[0]);
              stage.nearby.progress({1, files, 61'000, 123'456});
            }
            if (state == AirDropState::sent)
              stage.nearby.done({{}, files > 1});
            if (state == AirDropState::failed)
              stage.nearby.done({"Failed to send holiday-1.jpg to Ada's Phone because the device "
                                 "refused it or is gone",
                                 false});
            return new AirDropPanelView(look, *stage.model, {.chooseFiles = [] {}, .edit = [] {}});
          }};
}

} // namespace

GallerySheet airDropGallery() {
  GallerySheet sheet;
  const auto show = [&](const char* name, const AirDropTileState& state) {
    for (const int span : {1, 2, 3})
      sheet.push_back({name, span, [state](const TileSize& size) {
                         return size.isWide() ? airDropWideTile(state, size, [] {})
                                              : airDropTileIcon(state, size);
                       }});
  };
  show("idle", {AirDropState::idle, 0, {}, {}, false});
  show("one file", {AirDropState::choosing, 1, {}, {}, false});
  show("many", {AirDropState::choosing, 240, {}, {}, false});
  show("sending", {AirDropState::sending, 3, "Ada's Phone", 0.42, false});
  show("sent", {AirDropState::sent, 3, "Ada's Phone", {}, false});
  show("handed", {AirDropState::sent, 3, "Kitchen Tablet with a long name", {}, true});
  show("failed", {AirDropState::failed, 3, "Ada's Phone", {}, false});
  return sheet;
}

GalleryPanels airDropPanels() {
  return {panelOf("idle", true, 0, AirDropState::idle),
          panelOf("no device", false, 0, AirDropState::idle),
          panelOf("no service", false, 2, AirDropState::choosing, false),
          panelOf("choosing", true, 1, AirDropState::choosing),
          panelOf("sending", true, 3, AirDropState::sending),
          panelOf("sent", true, 1, AirDropState::sent),
          panelOf("handed over", true, 3, AirDropState::sent),
          panelOf("failed", true, 3, AirDropState::failed)};
}

const GalleryEntry airDropEntries[] = {{"airdrop", airDropGallery},
                                       {"airdrop-panels", airDropPanels}};

} // namespace tavrin
