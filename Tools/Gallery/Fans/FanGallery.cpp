#include "TavrinWidgetsUI/Fans/FanSwitch.h"
#include "TavrinWidgetsUI/Fans/FanViews.h"
#include "Tests/Support/FakePlatform.h"
#include "Tools/Gallery/Gallery.h"

#include <deque>

namespace tavrin {
namespace {

constexpr double fanSpeeds[] = {0, 1960, 6200};

GalleryPanel fanPanel(const char* name, int fans, FanHelperClient::Status status,
                      std::optional<FanHelperClient::Refusal> refusal, bool isFull) {
  return {name, fanTint, [=](const PanelAppearance& look) {
            static std::deque<test::FakePlatform> platforms;
            static std::deque<FanSwitch> switches;
            auto& platform = platforms.emplace_back();
            platform.fakeSMC.addFans(fans);
            platform.fans.current = status;
            auto& made = switches.emplace_back(platform.loop, platform.fakeSMC, platform.fans);
            made.start();
            platform.loop.runBackground();
            if (isFull || refusal) {
              made.setFull(true);
              platform.fans.answer(refusal);
            }
            return new FanPanelView(
                look, made, [] { return QString("Fans"); }, [] {});
          }};
}

} // namespace

GallerySheet fanGallery() {
  GallerySheet sheet;
  for (const int span : {1, 2, 3})
    for (const double speed : fanSpeeds)
      for (const bool isFull : {false, true})
        sheet.push_back({isFull ? "full" : "automatic", span, [=](const TileSize& size) {
                           FanStatus status{speed > 0, true, isFull && speed > 0, speed, {}};
                           if (speed > 0)
                             status.share = speed / 6200;
                           return size.isWide() ? fanWideTile("Fans", status, size, [] {})
                                                : fanTileIcon(status, size);
                         }});
  return sheet;
}

GalleryPanels fanPanels() {
  return {fanPanel("fans", 2, FanHelperClient::Status::ready, {}, false),
          fanPanel("full", 2, FanHelperClient::Status::ready, {}, true),
          fanPanel("first time", 2, FanHelperClient::Status::notRegistered, {}, false),
          fanPanel("approval", 1, FanHelperClient::Status::needsApproval, {}, false),
          fanPanel("trouble", 1, FanHelperClient::Status::ready,
                   FanHelperClient::Refusal{"Failed to reach the fan helper"}, false),
          fanPanel("no fans", 0, FanHelperClient::Status::ready, {}, false)};
}

const GalleryEntry fanEntries[] = {{"fans", fanGallery}, {"fans-panels", fanPanels}};

} // namespace tavrin
