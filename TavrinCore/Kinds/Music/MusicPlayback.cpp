#include "TavrinCore/Kinds/Music/MusicPlayback.h"

#include "TavrinCore/Base/FileURL.h"
#include "TavrinCore/Kinds/Clipboard/ClipboardItem.h"
#include "TavrinCore/Text/Text.h"

#include <algorithm>
#include <cmath>

namespace tavrin {
namespace {

constexpr std::size_t longestText = 300;
constexpr std::size_t mostArtists = 8;
constexpr std::size_t longestAddress = 8192;
/// A track of a year is a lie.
constexpr double longestTrack = 366.0 * 86'400;
constexpr double slowestRate = 0.01;
constexpr double fastestRate = 100;
constexpr double second = 1e6;

/// One line, without what does not print.
std::string line(std::string_view text) {
  std::string clean = cleanText(text, longestText);
  for (char& c : clean)
    if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F)
      c = ' ';
  return std::string(trimmed(clean));
}

/// The last part of an address.
std::string fileName(std::string_view url) {
  url = url.substr(0, std::min(url.find_first_of("?#"), longestAddress));
  return line(percentDecoded(url.substr(url.rfind('/') + 1)));
}

} // namespace

MusicTrack MusicTrack::of(const MusicMetadata& metadata) {
  MusicTrack track;
  track.title = line(metadata.title);
  if (track.title.empty())
    track.title = fileName(metadata.url);
  for (std::size_t i = 0; i < metadata.artists.size() && i < mostArtists; ++i)
    if (const auto artist = line(metadata.artists[i]); !artist.empty())
      track.artist += (track.artist.empty() ? "" : ", ") + artist;
  track.album = line(metadata.album);
  track.cover = pathOfFileURL(metadata.artURL);
  track.id = metadata.trackID;
  if (metadata.length) {
    const double length = *metadata.length / second;
    if (std::isfinite(length) && length > 0 && length <= longestTrack)
      track.length = length;
  }
  return track;
}

PlaybackStatus playbackStatus(std::string_view word) {
  return word == "Playing"  ? PlaybackStatus::playing
         : word == "Paused" ? PlaybackStatus::paused
                            : PlaybackStatus::stopped;
}

void MusicPlayback::setPosition(double seconds, Date now) {
  const double most = track.length.value_or(longestTrack);
  position = std::isfinite(seconds) ? std::clamp(seconds, 0.0, most) : 0;
  positionDate = now;
}

void MusicPlayback::setRate(double value, Date now) {
  setPosition(elapsed(now), now);
  // Backwards and standing still are not for a bar to show.
  rate = std::isfinite(value) && value >= slowestRate && value <= fastestRate ? value : 1;
}

void MusicPlayback::setStatus(PlaybackStatus value, Date now) {
  setPosition(value == PlaybackStatus::stopped ? 0 : elapsed(now), now);
  status = value;
}

double MusicPlayback::elapsed(Date now) const {
  const double most = track.length.value_or(longestTrack);
  const double moved = isPlaying() ? std::max(now.since(positionDate), 0.0) * rate : 0;
  return std::clamp(position + moved, 0.0, most);
}

std::optional<double> MusicPlayback::progress(Date now) const {
  return track.length ? std::optional(elapsed(now) / *track.length) : std::nullopt;
}

std::optional<double> MusicPlayback::untilNext(double step, Date now) const {
  const double done = elapsed(now);
  if (!isPlaying() || step <= 0 || (track.length && done >= *track.length))
    return std::nullopt;
  double next = (std::floor(done / step) + 1) * step;
  if (track.length)
    next = std::min(next, *track.length);
  return (next - done) / rate;
}

} // namespace tavrin
