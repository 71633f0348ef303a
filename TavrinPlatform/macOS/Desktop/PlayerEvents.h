#pragma once

#include <optional>
#include <string>

namespace tavrin {

/// The number that a code of four letters is.
constexpr unsigned fourLetters(const char (&text)[5]) {
  unsigned number = 0;
  for (int i = 0; i < 4; ++i)
    number = number << 8 | static_cast<unsigned char>(text[i]);
  return number;
}

/// What a scriptable player answers; units as `PlayerScript` has them turned.
struct PlayerAnswer {
  /// The system's number of what went wrong; 0 for nothing.
  int error = 0;
  /// "Playing", "Paused" or "Stopped".
  std::string state;
  std::string title;
  std::string artist;
  std::string album;
  /// Seconds.
  std::optional<double> duration;
  std::optional<double> position;
  /// 0...1.
  std::optional<double> volume;
};

/// A player's words for what all of them do, as four-letter codes.
struct PlayerScript {
  unsigned suite;
  unsigned playPause;
  unsigned next;
  unsigned previous;
  /// How many of its units of a track's duration are a second.
  double durationUnit;
};

/// Apple events to a running player, which is addressed by its process: one that has quit is not
/// started by a question. All of them wait for the player, or for the user whom the system asks
/// the first time: off the main thread.
class PlayerEvents {
public:
  PlayerEvents(const PlayerScript& script, int process) : script_(script), process_(process) {}

  PlayerAnswer ask() const;
  void command(unsigned event) const;
  /// Seconds.
  void setPosition(double seconds) const;
  /// 0...1.
  void setVolume(double volume) const;

private:
  PlayerScript script_;
  int process_;
};

} // namespace tavrin
