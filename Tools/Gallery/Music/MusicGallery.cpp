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

constexpr Date now{800'000'000};

/// A cover of the gallery's own.
const QImage& cover(bool isLight) {
  static const auto draw = [](const QColor& top, const QColor& bottom, const QColor& mark) {
    const AnyView picture = zstack(
        {rectangle().gradient(top, bottom), circle().stroke(mark, 14).padding(40),
         circle().fill(mark).padding(100), circle().fill(mark).frame(70, 70).offset(90, -95)});
    ViewRenderer renderer;
    renderer.render(picture, QSizeF(320, 320), 1);
    return renderer.image().copy();
  };
  static const QImage dark = draw({0x1F, 0x4E, 0x79}, {0x0B, 0x16, 0x2B}, {0xF2, 0xC1, 0x4E});
  static const QImage light = draw({0xFF, 0xF4, 0xE0}, {0xF6, 0xD9, 0xC0}, {0xD1, 0x49, 0x5B});
  return isLight ? light : dark;
}

MediaPlayer playerOf(PlaybackStatus status, const std::string& title, const std::string& artist,
                     double length = 213, double position = 74) {
  MediaPlayer player = test::FakeMediaPlayers::player("player", title, length, now);
  player.title = "Music Player";
  player.playback.track.artist = artist;
  player.playback.track.album = "Harbours";
  player.playback.status = status;
  player.playback.position = position;
  player.volume = 0.6;
  return player;
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
  test::ManualClock clock{now};
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
                cover(state.cover == 2).save(file);
                stage.players.all[0].playback.track.cover = file.toStdString();
              }
              if (hasOthers)
                stage.players.all.push_back(
                    test::FakeMediaPlayers::player("firefox", "A film", 0, now));
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
                             state.cover == 0 ? QImage() : cover(state.cover == 2);
                         return size.isWide() ? musicWideTile(player, picture, {}, now, size, {})
                                              : musicTileIcon(player, picture, {}, now, size);
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

} // namespace tavrin
