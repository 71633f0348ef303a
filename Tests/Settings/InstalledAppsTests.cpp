#include "TavrinCore/Kinds/Collection/CollectionSettings.h"
#include "TavrinSettings/Base/InstalledApps.h"
#include "TavrinSettings/Samples/SampleTiles.h"
#include "Tests/Support/FakeApplicationLibrary.h"
#include "Tests/Support/ManualRunLoop.h"

#include <gtest/gtest.h>

namespace tavrin {
namespace {

TEST(InstalledApps, AreLookedForOnceAndAgainWhenSomethingWasInstalled) {
  test::ManualClock clock{Date{}};
  test::ManualRunLoop loop{clock};
  test::FakeApplicationLibrary library(loop);
  library.installed = {test::FakeApplicationLibrary::app("Mail")};
  InstalledApps apps(library);
  int loads = 0;
  const auto watching = apps.observe([&] { ++loads; });
  const AppEntry mail{"/apps/Mail.desktop", {}, "Mail", {}};
  const AppEntry notes{"/apps/Notes.desktop", {}, "Notes", {}};
  const auto look = [&] {
    for (int round = 0; round < 3; ++round) {
      apps.app(mail, 20, 1.5);
      apps.app(notes, 20, 1.5);
      loop.advance(0.1);
    }
  };
  EXPECT_TRUE(apps.app(mail, 20, 1.5).icon.isNull());
  EXPECT_FALSE(apps.app(notes, 20, 1.5).isGone) << "not known yet";
  look();
  EXPECT_EQ(apps.app(mail, 20, 1.5).icon.width(), 40) << "whole pixels, and enough of them";
  EXPECT_TRUE(apps.app(notes, 20, 1.5).isGone);
  EXPECT_EQ(library.icons.size(), 1U);
  EXPECT_GE(loads, 2);
  library.installed.push_back(test::FakeApplicationLibrary::app("Notes"));
  library.changes.call();
  look();
  EXPECT_FALSE(apps.app(notes, 20, 1.5).icon.isNull());
}

TEST(SampleTiles, EveryKindHasSamplesAndNoBareSymbol) {
  test::ManualClock clock{Date{}};
  test::ManualRunLoop loop{clock};
  SampleTiles tiles(loop);
  for (const auto& info : allKinds())
    for (int span = 1; span <= info.maxSpan; ++span) {
      const TileSize size{64, span};
      const DockWidget widget({}, "", {}, *freshKind(info.key, {}), span);
      EXPECT_NE(tiles.tile(widget, size, {}), symbolTile(widget.kind, size, TileState::live))
          << info.key << " at span " << span;
    }
}

TEST(SampleTiles, ACollectionOfNothingIsShownAsItIs) {
  test::ManualClock clock{Date{}};
  test::ManualRunLoop loop{clock};
  SampleTiles tiles(loop);
  int asked = 0;
  tiles.application = [&](const AppEntry&, int) {
    ++asked;
    return CollectionTileApp{"Mail", {}, false};
  };
  const TileSize size{64, 1};
  const DockWidget kind({}, "Apps", {}, CollectionSettings(), 1);
  DockWidget mine(UUID::random(), "Apps", {}, CollectionSettings(), 1);
  EXPECT_NE(tiles.tile(kind, size, {}), tiles.tile(mine, size, {})) << "samples are for the kind";
  EXPECT_EQ(asked, 0);
  mine.kind.get<CollectionSettings>()->apps = {{"/apps/Mail.desktop", {}, "Mail", {}}};
  tiles.tile(mine, size, {});
  EXPECT_EQ(asked, 1);
}

} // namespace
} // namespace tavrin
