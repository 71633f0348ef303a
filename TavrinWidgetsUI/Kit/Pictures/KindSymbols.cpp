#include "TavrinWidgetsUI/Kit/Pictures/KindSymbols.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tavrin {
namespace {

constexpr auto symbols = std::to_array<std::pair<std::string_view, std::string_view>>({
    {"collection", "square.grid.2x2.fill"},
    {"timer", "timer"},
    {"pomodoro", "timer"},
    {"music", "music.note"},
    {"calendar", "calendar"},
    {"battery", "battery.100"},
    {"clock", "clock"},
    {"stopwatch", "stopwatch"},
    {"countdown", "hourglass"},
    {"timeProgress", "largecircle.fill.circle"},
    {"activity", "cpu"},
    {"network", "network"},
    {"note", "note.text"},
    {"reminders", "list.bullet"},
    {"shortcut", "command"},
    {"airdrop", "dot.radiowaves.up.forward"},
    {"weather", "cloud.sun.fill"},
    {"claudeUsage", "sparkle"},
    {"github", "arrow.triangle.pull"},
    {"pet", "pawprint.fill"},
    {"colourPicker", "eyedropper"},
    {"clipboard", "doc.on.clipboard"},
    {"bookmarks", "bookmark.fill"},
    {"emoji", "face.smiling"},
    {"screenshots", "photo"},
    {"files", "folder.fill"},
    {"shelf", "tray.full.fill"},
    {"water", "drop.fill"},
    {"converter", "arrow.left.arrow.right"},
    {"fans", "fanblades.fill"},
    {"keyboardLock", "keyboard"},
});

} // namespace

std::string_view kindSymbol(std::string_view key) {
  const auto found = std::find_if(symbols.begin(), symbols.end(),
                                  [&](const auto& entry) { return entry.first == key; });
  return found == symbols.end() ? "questionmark.square" : found->second;
}

} // namespace tavrin
