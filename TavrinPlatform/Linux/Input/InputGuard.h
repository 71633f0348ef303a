#pragma once

#include <optional>

namespace tavrin {

/// Holding input is done by a process of its own, the guard: it lets go when the slot that asked
/// crashes or stands still, and the slot ends the guard when that stands still; a guard that stands
/// still ends with its slot. They tell each
/// other that they are there over the guard's standard input and output, a byte at a time.
namespace guard {
inline constexpr char argument[] = "--input-guard";
/// Either says this every `beat` seconds; the other gives up after `silence` seconds without.
inline constexpr char alive = 'a';
inline constexpr double beat = 0.4;
inline constexpr double silence = 2;
/// Seconds between two looks whether the hold is whole.
inline constexpr double look = 0.5;
/// What the guard answers, once; then come Quartz event type numbers, all below 64.
inline constexpr char holding = 'H';
inline constexpr char busy = 'B';
inline constexpr char notPermitted = 'N';
inline constexpr char refused = 'R';
} // namespace guard

/// Where input can be held: with the X server's grabs, or with those of the kernel's devices where
/// there is no X server of its own.
enum class InputGuardMeans { none, x11, evdev };
InputGuardMeans inputGuardMeans();

/// The guard's `main` when the arguments ask for one ("--input-guard keyboard|all SECONDS PARENT",
/// the last one the process that it must not outlive): its exit status. To be asked before anything
/// is set up.
std::optional<int> runInputGuardIfAsked(int argc, char** argv);

} // namespace tavrin
