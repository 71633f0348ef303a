#include "TavrinCore/Base/FileURL.h"
#include "TavrinCore/Kinds/Music/MusicPlayback.h"
#include "TavrinCore/Text/Text.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>

/// Any text is each text a player may tell, and any number each number.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  using namespace tavrin;
  double number = 0;
  std::memcpy(&number, bytes, std::min(size, sizeof number));
  const std::string text(reinterpret_cast<const char*>(bytes), size);
  const auto track =
      MusicTrack::of({text, {text, text}, text, text, "file://" + text, text, number});
  for (const auto* value : {&track.title, &track.artist, &track.album})
    if (!isUTF8(*value) || value->size() > 5000 || value->find('\n') != std::string::npos)
      std::abort();
  if (track.cover &&
      (!track.cover->is_absolute() || track.cover->string().find('\0') != std::string::npos))
    std::abort();
  MusicPlayback playback;
  playback.track = track;
  playback.setStatus(PlaybackStatus::playing, {0});
  playback.setPosition(number, {0});
  playback.setRate(number, {10});
  const double elapsed = playback.elapsed({100});
  const auto progress = playback.progress({100});
  const auto wait = playback.untilNext(1, {100});
  if (!(elapsed >= 0) || (progress && !(*progress >= 0 && *progress <= 1)) ||
      (wait && !(*wait >= 0)))
    std::abort();
  pathOfFileURL(text);
  return 0;
}
