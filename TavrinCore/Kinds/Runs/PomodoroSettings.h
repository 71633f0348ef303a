#pragma once

#include "TavrinCore/Base/Coding.h"

namespace tavrin {

enum class PomodoroPhase { focus, shortBreak, longBreak };

template <> struct EnumNames<PomodoroPhase> {
  static constexpr std::array names = {
      std::pair{PomodoroPhase::focus, std::string_view{"focus"}},
      std::pair{PomodoroPhase::shortBreak, std::string_view{"shortBreak"}},
      std::pair{PomodoroPhase::longBreak, std::string_view{"longBreak"}}};
};

template <> struct EnumTitles<PomodoroPhase> {
  static constexpr auto titles =
      std::to_array<std::string_view>({marked("Focus"), marked("Break"), marked("Long Break")});
};

constexpr bool isBreak(PomodoroPhase phase) {
  return phase != PomodoroPhase::focus;
}

/// The lengths are in seconds and stored as they were set; `length` is what counts.
struct PomodoroSettings {
  static constexpr std::string_view kindKey = "pomodoro";
  static constexpr double defaultFocus = 1500;
  static constexpr double defaultShortBreak = 300;
  static constexpr double defaultLongBreak = 900;
  /// What an editor offers for the three lengths, in minutes.
  static constexpr FieldRange lengthRange{1, 120};
  static constexpr FieldRange cycleRange{2, 8};

  double focus = defaultFocus;
  double shortBreak = defaultShortBreak;
  double longBreak = defaultLongBreak;
  /// Focus phases in a round, which ends with a long break.
  int cyclesBeforeLongBreak = 4;
  bool startsBreaksAutomatically = true;
  bool ringsAtTheEnd = true;

  /// Seconds, at least 1.
  constexpr double length(PomodoroPhase phase) const {
    const double stored = phase == PomodoroPhase::focus        ? focus
                          : phase == PomodoroPhase::shortBreak ? shortBreak
                                                               : longBreak;
    return stored > 1 ? stored : 1;
  }

  /// Focus phases in a round as they are counted, at least 2.
  constexpr int cycles() const { return cyclesBeforeLongBreak > 2 ? cyclesBeforeLongBreak : 2; }

  static constexpr auto fields() {
    using S = PomodoroSettings;
    constexpr double shortest = lengthRange.lower * 60;
    constexpr double longest = lengthRange.upper * 60;
    return std::tuple{optional("focus", &S::focus)
                          .titled("Focus")
                          .helped("How long a phase of work is.")
                          .shownIn("min", 60)
                          .stepping(300)
                          .in("s")
                          .ranging(shortest, longest),
                      optional("shortBreak", &S::shortBreak)
                          .titled("Break")
                          .helped("How long you rest after a phase of work.")
                          .shownIn("min", 60)
                          .stepping(60)
                          .in("s")
                          .ranging(shortest, longest),
                      optional("longBreak", &S::longBreak)
                          .titled("Long break")
                          .helped("How long you rest at the end of a round.")
                          .shownIn("min", 60)
                          .stepping(300)
                          .in("s")
                          .ranging(shortest, longest),
                      optional("cyclesBeforeLongBreak", &S::cyclesBeforeLongBreak)
                          .titled("Focus phases before a long break")
                          .helped("How many of them make a round.")
                          .ranging(cycleRange.lower, cycleRange.upper),
                      optional("startsBreaksAutomatically", &S::startsBreaksAutomatically)
                          .titled("Start breaks automatically")
                          .helped("Otherwise a break waits until you start it."),
                      optional("ringsAtTheEnd", &S::ringsAtTheEnd)
                          .titled("Ring at the end")
                          .helped("Plays a sound when a phase is over.")};
  }
  bool operator==(const PomodoroSettings&) const = default;
};

} // namespace tavrin
