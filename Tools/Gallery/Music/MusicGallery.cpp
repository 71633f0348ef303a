#include "TavrinCore/Kinds/Music/MusicSettings.h"
#include "TavrinSettings/Samples/SampleValues.h"
#include "TavrinWidgetsUI/Kit/Views/ViewRenderer.h"
#include "TavrinWidgetsUI/Music/MusicPanelView.h"
#include "TavrinWidgetsUI/Music/MusicViews.h"
#include "Tests/Support/FakeMediaPlayers.h"
#include "Tests/Support/ManualRunLoop.h"
#include "Tools/Gallery/Gallery.h"

#include <QDir>
#include <QUrl>
#include <memory>

namespace tavrin {
namespace {

MediaPlayer playerOf(PlaybackStatus status, const std::string& title, const std::string& artist,
                     double length = 213, double position = 74) {
  return samples::player(status, title, artist, galleryNow, length, position);
}

struct State {
  const char* name;
  std::optional<MediaPlayer> player;
  int cover = 0; // 0 none, 1 dark, 2 light
};

std::vector<State> states() {
  using enum PlaybackStatus;
  auto silent = playerOf(playing, "Morning Tide", "The Lighthouse Quartet");
  silent.isAnswering = false;
  auto bare = playerOf(playing, "", "", 0);
  bare.canSeek = bare.canGoNext = bare.canGoPrevious = false;
  bare.volume.reset();
  return {
      {"nothing", std::nullopt},
      {"playing", playerOf(playing, "Morning Tide", "The Lighthouse Quartet"), 1},
      {"light", playerOf(playing, "Morning Tide", "The Lighthouse Quartet", 213, 190), 2},
      {"paused", playerOf(paused, "Morning Tide", "The Lighthouse Quartet"), 1},
      {"no cover", playerOf(playing, "Morning Tide", "The Lighthouse Quartet")},
      {"paused bare", playerOf(paused, "Morning Tide", "")},
      {"long",
       playerOf(playing, "Symphony No. 9 in D minor, Op. 125 “Choral”: IV. Presto — Allegro assai",
                "An orchestra with a very long name indeed, and its choir", 36'900, 20'000),
       1},
      {"stopped", playerOf(stopped, "", "")},
      {"bare", bare},
      {"silent", silent}};
}

struct Stage {
  test::ManualClock clock{galleryNow};
  test::ManualRunLoop loop{clock};
  test::FakeMediaPlayers players;
  std::unique_ptr<MusicModel> model;
};

GalleryPanel panelOf(const State& state, bool hasOthers = false, bool isAvailable = true) {
  return {state.name, musicTint, [=](const PanelAppearance& look) {
            static std::vector<std::unique_ptr<Stage>> stages;
            stages.push_back(std::make_unique<Stage>());
            Stage& stage = *stages.back();
            stage.players.available = isAvailable;
            if (state.player) {
              stage.players.all = {*state.player};
              if (state.cover != 0) {
                const QString file = QDir::temp().filePath(
                    QStringLiteral("tavrin-gallery-cover-%1.png").arg(state.cover));
                samples::cover(state.cover == 2).save(file);
                stage.players.all[0].playback.track.cover = file.toStdString();
              }
              if (hasOthers)
                stage.players.all.push_back(
                    test::FakeMediaPlayers::player("firefox", "A film", 0, galleryNow));
            }
            stage.model = std::make_unique<MusicModel>(
                stage.players, stage.clock, stage.loop,
                DockWidget(UUID::random(), "Music", 1, MusicSettings{}, 1));
            stage.loop.runBackground();
            return new MusicPanelView(look, *stage.model,
                                      {.choose = [](const auto&) {}, .edit = [] {}});
          }};
}

} // namespace

GallerySheet musicGallery() {
  GallerySheet sheet;
  for (const State& state : states())
    for (const int span : {1, 2, 3, 4})
      sheet.push_back({state.name, span, [state](const TileSize& size) {
                         const auto* player = state.player ? &*state.player : nullptr;
                         const QImage picture =
                             state.cover == 0 ? QImage() : samples::cover(state.cover == 2);
                         return size.isWide()
                                    ? musicWideTile(player, picture, {}, galleryNow, size, {})
                                    : musicTileIcon(player, picture, {}, galleryNow, size);
                       }});
  return sheet;
}

GalleryPanels musicPanels() {
  GalleryPanels panels;
  for (const State& state : states())
    panels.push_back(panelOf(state, state.cover == 1));
  panels.push_back(panelOf({"no bus", std::nullopt}, false, false));
  return panels;
}

const GalleryEntry musicEntries[] = {{"music", musicGallery}, {"music-panels", musicPanels}};

} // namespace tavrin
