#include "TavrinCore/Kinds/Music/MusicPlayback.h"
#include "TavrinCore/Kinds/Shortcut/ShortcutOutput.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace tavrin {
namespace {

constexpr Date start{1000};
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nothing = std::numeric_limits<double>::quiet_NaN();

MusicPlayback playing(double length) {
  MusicPlayback playback;
  playback.track.length = length;
  playback.setPosition(0, start);
  playback.setStatus(PlaybackStatus::playing, start);
  return playback;
}

TEST(MusicTrack, NonsenseIsMadeFitToShow) {
  MusicMetadata lies;
  lies.title = "  A\ntitle\twith\x01 \xFF controls ";
  lies.artists = {"", "One", " ", "Two"};
  lies.artURL = "https://example.org/cover.png";
  const std::pair<double, bool> lengths[] = {{-1, false},      {0, false},      {infinity, false},
                                             {nothing, false}, {9.2e18, false}, {1e6, true}};
  for (const auto& [length, isKept] : lengths) {
    lies.length = length;
    EXPECT_EQ(MusicTrack::of(lies).length.has_value(), isKept) << length;
  }
  const auto track = MusicTrack::of(lies);
  EXPECT_EQ(track.title, "A title with  \xEF\xBF\xBD controls");
  EXPECT_EQ(track.artist, "One, Two");
  EXPECT_FALSE(track.cover);
  EXPECT_EQ(track.length, 1.0);
  lies.title = "\n";
  lies.url = "file:///music/a%20song.ogg?x#y";
  EXPECT_EQ(MusicTrack::of(lies).title, "a song.ogg");
  lies.title = std::string(100'000, 'x');
  EXPECT_EQ(MusicTrack::of(lies).title.size(), 300U);
}

TEST(MusicPlayback, ThePositionMovesWithTheRate) {
  auto playback = playing(100);
  EXPECT_EQ(playback.elapsed(start + 10), 10);
  playback.setRate(2, start + 10);
  EXPECT_EQ(playback.elapsed(start + 20), 30);
  EXPECT_EQ(playback.progress(start + 20), 0.3);
  playback.setStatus(PlaybackStatus::paused, start + 20);
  EXPECT_EQ(playback.elapsed(start + 500), 30);
  playback.setStatus(PlaybackStatus::playing, start + 500);
  EXPECT_EQ(playback.elapsed(start + 1000), 100) << "not beyond the end";
  EXPECT_EQ(playback.elapsed(start), 30) << "a clock set back moves nothing";
  playback.setStatus(PlaybackStatus::stopped, start + 600);
  EXPECT_EQ(playback.elapsed(start + 700), 0);
}

TEST(MusicPlayback, WhatAPlayerSaysIsBroughtToWhatCanBe) {
  auto playback = playing(100);
  for (const double position : {-5.0, nothing, -infinity}) {
    playback.setPosition(position, start);
    EXPECT_EQ(playback.elapsed(start), 0) << position;
  }
  playback.setPosition(1e18, start);
  EXPECT_EQ(playback.elapsed(start), 100);
  playback.setPosition(10, start);
  for (const double rate : {0.0, -1.0, nothing, infinity, 1e9}) {
    playback.setRate(rate, start);
    EXPECT_EQ(playback.rate, 1) << rate;
  }
  playback.track.length.reset();
  EXPECT_FALSE(playback.progress(start));
  EXPECT_EQ(playbackStatus("Playing"), PlaybackStatus::playing);
  EXPECT_EQ(playbackStatus("playing"), PlaybackStatus::stopped);
}

TEST(MusicPlayback, SaysWhenItsPictureChangesNext) {
  auto playback = playing(100);
  playback.setPosition(9.5, start);
  EXPECT_EQ(playback.untilNext(10, start), 0.5);
  EXPECT_EQ(playback.untilNext(10, start + 0.5), 10);
  playback.setRate(2, start);
  EXPECT_EQ(playback.untilNext(10, start), 0.25);
  playback.setPosition(99.5, start);
  EXPECT_EQ(playback.untilNext(10, start), 0.25) << "the end comes before the next step";
  EXPECT_FALSE(playback.untilNext(10, start + 5)) << "at the end";
  playback.setStatus(PlaybackStatus::paused, start);
  EXPECT_FALSE(playback.untilNext(10, start));
}

std::string shown(std::initializer_list<std::string_view> pieces) {
  ShortcutOutput output;
  for (const auto piece : pieces)
    output.append(piece);
  return output.text();
}

TEST(ShortcutOutput, ShowsWhatATerminalWould) {
  EXPECT_EQ(shown({"one\ntw", "o\n"}), "one\ntwo");
  EXPECT_EQ(shown({"10 %\r55 %\r", "100 %\ndone"}), "100 %\ndone");
  EXPECT_EQ(shown({"a\r\nb\r\n"}), "a\nb") << "the end of a line in other systems";
  EXPECT_EQ(shown({"\x1B[1;3", "1mred\x1B[0m \x1B]0;title\aplain"}), "red plain");
  EXPECT_EQ(shown({"a\tb"}), "a       b");
  EXPECT_EQ(shown({"abc\b\bX"}), "aX");
  EXPECT_EQ(shown({"\xC3", "\xA9 \xFF"}), "é \xEF\xBF\xBD") << "a letter in two pieces";
  EXPECT_EQ(shown({"\n\n"}), "");
}

TEST(ShortcutOutput, KeepsTheLastLinesAlone) {
  ShortcutOutput output;
  for (int i = 0; i < 1000; ++i)
    output.append("line " + std::to_string(i) + "\n");
  EXPECT_TRUE(output.isCut());
  EXPECT_TRUE(output.text().starts_with("line 800\n"));
  EXPECT_EQ(output.lastLine(), "line 999");
  output.append(std::string(1'000'000, 'x') + "\n");
  EXPECT_EQ(output.lastLine().size(), ShortcutOutput::longestLine);
  output.clear();
  EXPECT_TRUE(output.isEmpty());
}

} // namespace
} // namespace tavrin
