#pragma once

#include "TavrinCore/Base/Date.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tavrin {

/// What a player says of its track, as it came. Any of it may be missing or nonsense.
struct MusicMetadata {
  std::string title;
  std::vector<std::string> artists;
  std::string album;
  /// Where the track is.
  std::string url;
  std::string artURL;
  std::string trackID;
  /// Microseconds.
  std::optional<double> length;
};

/// A track, fit to be shown: texts of one line, bounded; a length that can be one.
struct MusicTrack {
  /// The file's name where the player has no title.
  std::string title;
  std::string artist;
  std::string album;
  /// The cover's file; no value where there is none on this computer.
  std::optional<std::filesystem::path> cover;
  /// For seeking.
  std::string id;
  /// Seconds.
  std::optional<double> length;

  static MusicTrack of(const MusicMetadata& metadata);
  bool isEmpty() const { return title.empty() && artist.empty(); }
  bool operator==(const MusicTrack&) const = default;
};

enum class PlaybackStatus { stopped, paused, playing };
/// "Playing" and so on; anything else is stopped.
PlaybackStatus playbackStatus(std::string_view word);

/// How far a player is. It tells its position seldom; between that the rate tells.
struct MusicPlayback {
  PlaybackStatus status = PlaybackStatus::stopped;
  MusicTrack track;
  /// Seconds into the track at `positionDate`.
  double position = 0;
  Date positionDate;
  double rate = 1;

  bool isPlaying() const { return status == PlaybackStatus::playing; }
  /// Takes in what a player says; what cannot be is brought to what can.
  void setPosition(double seconds, Date now);
  void setRate(double value, Date now);
  void setStatus(PlaybackStatus value, Date now);

  /// Seconds, from 0 to the track's length.
  double elapsed(Date now) const;
  /// 0...1; no value where the length is not known.
  std::optional<double> progress(Date now) const;
  /// Seconds until the elapsed time passes the next multiple of `step` seconds of the track; no
  /// value where it stands still or is at its end.
  std::optional<double> untilNext(double step, Date now) const;

  bool operator==(const MusicPlayback&) const = default;
};

} // namespace tavrin
