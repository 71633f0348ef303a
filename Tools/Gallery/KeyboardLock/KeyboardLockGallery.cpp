#include "TavrinCore/Kinds/KeyboardLock/KeyboardLockSettings.h"
#include "TavrinWidgetsUI/KeyboardLock/KeyboardLock.h"
#include "TavrinWidgetsUI/KeyboardLock/KeyboardLockViews.h"
#include "Tests/Support/FakePlatform.h"
#include "Tools/Gallery/Gallery.h"

#include <deque>

namespace tavrin {
namespace {

const KeyboardLockStatus lockCases[] = {
    {}, {true, true, 119, 3, 0}, {true, false, {}, 3, 0}, {true, true, 1800, 3, 0.6}};

GalleryPanel lockPanel(const char* name, InputBlocker::Outcome outcome, bool locks) {
  return {name, keyboardLockTint, [=](const PanelAppearance& look) {
            static std::deque<test::FakePlatform> platforms;
            static std::deque<KeyboardLock> kept;
            auto& platform = platforms.emplace_back();
            auto& lock =
                kept.emplace_back(KeyboardLock::Services{platform.fakeClock, platform.loop,
                                                         platform.blocker, platform.fakeSounds},
                                  KeyboardLockSettings{});
            if (locks) {
              lock.lock();
              platform.blocker.callbacks.started(outcome);
            }
            return new KeyboardLockPanelView(
                look, lock, {[] { return QString("Keyboard Lock"); }, [] {}, [] {}, [] {}});
          }};
}

} // namespace

GallerySheet keyboardLockGallery() {
  GallerySheet sheet;
  for (const int span : {1, 2, 3})
    for (const auto& status : lockCases)
      sheet.push_back({status.isLocked ? "locked" : "unlocked", span, [=](const TileSize& size) {
                         return size.isWide()
                                    ? keyboardLockWideTile("Keyboard Lock", status, size, [] {})
                                    : keyboardLockTileIcon(status, size);
                       }});
  return sheet;
}

GalleryPanels keyboardLockPanels() {
  return {lockPanel("lock", InputBlocker::Outcome::holding, false),
          lockPanel("locked", InputBlocker::Outcome::holding, true),
          lockPanel("refused", InputBlocker::Outcome::secureInput, true)};
}

const GalleryEntry keyboardLockEntries[] = {{"keyboard-lock", keyboardLockGallery},
                                            {"keyboard-lock-panels", keyboardLockPanels}};

} // namespace tavrin
