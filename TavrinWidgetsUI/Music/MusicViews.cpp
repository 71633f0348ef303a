#include "TavrinWidgetsUI/Music/MusicViews.h"

#include "TavrinWidgetsUI/Kit/Pieces.h"
#include "TavrinWidgetsUI/Kit/Utf8.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <algorithm>
#include <cmath>

namespace tavrin {
namespace {

constexpr QColor groundTop{0x4A, 0x1C, 0x2A};
constexpr QColor groundEnd{0x22, 0x10, 0x18};
constexpr double pausedOpacity = 0.55;

QString spoken(const MediaPlayer& player) {
  const auto& track = player.playback.track;
  QStringList parts{trackTitle(player)};
  if (!track.artist.empty())
    parts << utf8(track.artist);
  parts << playbackWord(player);
  return joinedFacts(std::move(parts));
}

std::optional<double> shownProgress(const MediaPlayer& player, const MusicSettings& settings,
                                    Date now) {
  return settings.showsProgress && player.playback.status != PlaybackStatus::stopped
             ? player.playback.progress(now)
             : std::nullopt;
}

AnyView note(double side, const QColor& colour) {
  return symbol("music.note").colour(colour).size(side);
}

AnyView quietTile(const TileSize& size) {
  return tile(TileContent{.ground = groundTop,
                          .groundEnd = groundEnd,
                          .sentence = worded("Nothing playing"),
                          .mark = note(size.body() * 0.42, musicTint).opacity(pausedOpacity),
                          .markRatio = 0.42,
                          .label = worded("Music"),
                          .value = worded("Nothing playing")},
              size);
}

/// The cover over the whole body, the title on a shade at its foot.
AnyView coverTile(const MediaPlayer& player, const QImage& cover, const MusicSettings& settings,
                  Date now, const TileSize& size) {
  const double body = size.body();
  const bool isPlaying = player.playback.isPlaying();
  const auto progress = shownProgress(player, settings, now);
  std::vector<AnyView> layers{image(cover).covering().fill()};
  if (!isPlaying)
    layers.push_back(rectangle().fill(QColor(0, 0, 0, 110)));
  if (size.hasCaption()) {
    const double points = size.caption();
    // As dark behind the letters on a small tile as on a large one.
    const double shade = body * 0.3 + points * 1.6;
    layers.push_back(rectangle()
                         .gradient(QColor(0, 0, 0, 1), QColor(0, 0, 0, 240))
                         .height(shade)
                         .overlay(text(trackTitle(player))
                                      .size(points)
                                      .weight(FontWeight::medium)
                                      .colour(palette::white)
                                      .align(TextAlignment::centre)
                                      .padding({body * 0.11, 0, body * 0.11, body * 0.12}),
                                  Alignment::bottom)
                         .fill(Alignment::bottom));
  }
  if (!isPlaying)
    layers.push_back(symbol("pause.fill").colour(palette::white).size(body * 0.36));
  const double margin = (size.height() - body) / 2;
  std::vector<AnyView> parts{tile(groundEnd, zstack(std::move(layers)), size).cached()};
  if (progress)
    parts.push_back(
        progressBorder(*progress).tint(musicTint).track(QColor(0, 0, 0, 130)).padding(margin));
  return zstack(std::move(parts)).accessibility(worded("Music"), spoken(player));
}

AnyView words(const MediaPlayer& player, const MusicSettings& settings, const TileSize& size) {
  const double body = size.body();
  const QColor ground = mix(groundTop, groundEnd, 0.5);
  const bool isTwoLines = settings.showsArtist && !player.playback.track.artist.empty();
  const AnyView title = text(trackTitle(player))
                            .size(size.words(0.235))
                            .weight(FontWeight::semibold)
                            .colour(palette::figure(ground))
                            .lines(isTwoLines ? 1 : 2);
  const QString second = player.playback.status == PlaybackStatus::stopped || !player.isAnswering
                             ? playbackWord(player)
                         : isTwoLines ? utf8(player.playback.track.artist)
                                      : QString();
  if (second.isEmpty())
    return title;
  return vstack({title, text(second)
                            .size(size.words(0.185))
                            .colour(palette::caption(ground))
                            .lines(player.isAnswering ? 1 : 3)})
      .align(Alignment::leading)
      .spacing(body * 0.04);
}

} // namespace

QString playbackWord(const MediaPlayer& player) {
  if (!player.isAnswering)
    return worded("Does not answer");
  switch (player.playback.status) {
  case PlaybackStatus::playing:
    return worded("Playing");
  case PlaybackStatus::paused:
    return worded("Paused");
  case PlaybackStatus::stopped:
    break;
  }
  return worded("Stopped");
}

QString trackTitle(const MediaPlayer& player) {
  const auto& track = player.playback.track;
  return utf8(track.title.empty() ? player.title : track.title);
}

AnyView musicCover(const QImage& cover, double side) {
  const Shape form = superellipse(side * 0.14);
  if (cover.isNull())
    return zstack({form.gradient(groundTop.lighter(130), groundEnd), note(side * 0.5, musicTint)})
        .frame(side, side);
  return image(cover).covering().frame(side, side).clip(form);
}

int musicTileSteps(const TileSize& size, double scale) {
  // The border's way round the body, a step a pixel.
  return static_cast<int>(std::lround(2 * (size.body() + size.bodyWidth()) * scale * 0.9));
}

AnyView musicTileIcon(const MediaPlayer* player, const QImage& cover, const MusicSettings& settings,
                      Date now, const TileSize& size) {
  if (player == nullptr)
    return quietTile(size);
  if (player->isAnswering && settings.showsCover && !cover.isNull())
    return coverTile(*player, cover, settings, now, size);
  const bool isPlaying = player->playback.isPlaying();
  TileContent content;
  content.ground = groundTop;
  content.groundEnd = groundEnd;
  if (const auto progress = shownProgress(*player, settings, now))
    content.border = TileBorder{*progress, musicTint, QColor(0x5A, 0x36, 0x42)};
  content.mark = isPlaying || player->playback.status == PlaybackStatus::stopped
                     ? note(size.body() * 0.4, musicTint)
                     : AnyView(symbol("pause.fill").colour(musicTint).size(size.body() * 0.4));
  content.markRatio = 0.4;
  content.caption = trackTitle(*player);
  content.label = worded("Music");
  content.value = spoken(*player);
  if (!player->isAnswering)
    content.state = TileState::cannot;
  return tile(content, size);
}

namespace {

/// The cover, which plays and pauses: what two tiles have room for beside the words.
AnyView playingCover(const MediaPlayer& player, const QImage& cover, double side,
                     const MusicTileActions& actions) {
  const bool isPlaying = player.playback.isPlaying();
  const AnyView picture = musicCover(cover, side);
  if (!(isPlaying ? player.canPause : player.canPlay))
    return picture;
  const AnyView mark =
      zstack(
          {circle().fill(QColor(0, 0, 0, 150)),
           symbol(isPlaying ? "pause.fill" : "play.fill").colour(palette::white).size(side * 0.3)})
          .frame(side * 0.56, side * 0.56);
  return zstack({picture, mark})
      .frame(side, side)
      .button({isPlaying ? "pause" : "play", actions.playPause},
              isPlaying ? worded("Pause") : worded("Play"));
}

} // namespace

AnyView musicWideTile(const MediaPlayer* player, const QImage& cover, const MusicSettings& settings,
                      Date now, const TileSize& size, const MusicTileActions& actions) {
  WideTileContent content;
  content.ground = groundTop;
  content.groundEnd = groundEnd;
  content.tint = musicTint;
  if (player == nullptr) {
    content.mark = note(size.body() * 0.5, musicTint).opacity(pausedOpacity);
    content.caption = worded("Music");
    content.middle = text(worded("Nothing playing"))
                         .size(size.words(0.22))
                         .weight(FontWeight::semibold)
                         .lines(2)
                         .colour(palette::caption(groundTop));
    content.label = worded("Music");
    content.value = worded("Nothing playing");
    return wideTile(content, size).unmirrored();
  }
  const bool isPlaying = player->playback.isPlaying();
  const double markSide = size.body() * 0.6;
  const QImage shown = settings.showsCover ? cover : QImage();
  const bool isNarrow = size.span < 3 && player->isAnswering;
  if (!player->isAnswering)
    content.state = TileState::cannot;
  content.middle = words(*player, settings, size);
  if (isNarrow)
    content.middle = hstack({playingCover(*player, shown, markSide, actions), content.middle})
                         .spacing(size.padding() * 0.8);
  else
    content.mark = musicCover(shown, markSide);
  if (const auto progress = shownProgress(*player, settings, now))
    content.border = TileBorder{*progress, musicTint, QColor(0x5A, 0x36, 0x42)};
  if (size.span > 3 && player->canGoPrevious)
    content.actions.push_back(
        {{"previous", actions.previous}, "backward.end.fill", worded("Previous track"), false});
  if (!isNarrow && (isPlaying ? player->canPause : player->canPlay))
    content.actions.push_back({{isPlaying ? "pause" : "play", actions.playPause},
                               isPlaying ? "pause.fill" : "play.fill",
                               isPlaying ? worded("Pause") : worded("Play"),
                               true});
  if (size.span > 2 && player->canGoNext)
    content.actions.push_back(
        {{"next", actions.next}, "forward.end.fill", worded("Next track"), false});
  content.label = worded("Music");
  content.value = spoken(*player);
  return wideTile(content, size).unmirrored();
}

} // namespace tavrin
