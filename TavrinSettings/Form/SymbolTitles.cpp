#include "TavrinSettings/Form/SymbolTitles.h"

#include "TavrinWidgetsUI/Kit/Pictures/Symbols.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <algorithm>
#include <array>
#include <string>

namespace tavrin {
namespace {

struct SymbolTitle {
  std::string_view name;
  const char* title;
};

/// By name, without ".fill", in ascending order.
constexpr std::array symbolTitles = std::to_array<SymbolTitle>({
    {"airpodspro.chargingcase.wireless", marked("Earphone case")},
    {"archivebox", marked("Archive box")},
    {"arrow.clockwise", marked("Clockwise arrow")},
    {"arrow.counterclockwise", marked("Anticlockwise arrow")},
    {"arrow.down", marked("Arrow down")},
    {"arrow.left.arrow.right", marked("Arrows left and right")},
    {"arrow.right", marked("Arrow right")},
    {"arrow.triangle.pull", marked("Branching arrows")},
    {"arrow.up", marked("Arrow up")},
    {"arrow.up.arrow.down", marked("Arrows up and down")},
    {"arrow.up.right", marked("Arrow up and right")},
    {"arrow.uturn.backward", marked("Arrow turning back")},
    {"arrow.uturn.forward", marked("Arrow turning forward")},
    {"backward.end", marked("To the beginning")},
    {"battery", marked("Empty battery")},
    {"battery.100", marked("Full battery")},
    {"battery.25", marked("Low battery")},
    {"battery.50", marked("Half-full battery")},
    {"bell", marked("Bell")},
    {"bolt", marked("Lightning bolt")},
    {"bookmark", marked("Ribbon bookmark")},
    {"calendar", marked("Calendar sheet")},
    {"checkmark", marked("Check mark")},
    {"checkmark.circle", marked("Check mark in a circle")},
    {"chevron.down", marked("Angle down")},
    {"chevron.left", marked("Angle left")},
    {"chevron.left.forwardslash.chevron.right", marked("Source code")},
    {"chevron.right", marked("Angle right")},
    {"chevron.up", marked("Angle up")},
    {"circle", marked("Circle")},
    {"clock", marked("Clock face")},
    {"cloud", marked("Cloud")},
    {"cloud.bolt.rain", marked("Cloud with lightning")},
    {"cloud.drizzle", marked("Cloud with drizzle")},
    {"cloud.fog", marked("Cloud with fog")},
    {"cloud.moon", marked("Cloud and moon")},
    {"cloud.rain", marked("Cloud with rain")},
    {"cloud.snow", marked("Cloud with snow")},
    {"cloud.sun", marked("Cloud and sun")},
    {"command", marked("Command key")},
    {"computermouse", marked("Computer mouse")},
    {"cpu", marked("Processor chip")},
    {"cup.and.saucer", marked("Cup and saucer")},
    {"doc", marked("Sheet of paper")},
    {"doc.on.clipboard", marked("Clipboard with a sheet")},
    {"dot.radiowaves.up.forward", marked("Radio waves")},
    {"drop", marked("Drop")},
    {"ellipsis", marked("Three dots")},
    {"exclamationmark.triangle", marked("Warning sign")},
    {"eye", marked("Eye")},
    {"eyedropper", marked("Eyedropper")},
    {"face.smiling", marked("Smiling face")},
    {"fanblades", marked("Fan blades")},
    {"film", marked("Film strip")},
    {"flag", marked("Flag")},
    {"folder", marked("File folder")},
    {"forward.end", marked("To the end")},
    {"gearshape", marked("Gear wheel")},
    {"globe", marked("Globe")},
    {"headphones", marked("Headphones")},
    {"heart", marked("Heart")},
    {"hourglass", marked("Hourglass")},
    {"info.circle", marked("Information sign")},
    {"ipad", marked("Tablet computer")},
    {"iphone", marked("Mobile phone")},
    {"keyboard", marked("Keyboard")},
    {"laptopcomputer", marked("Laptop")},
    {"largecircle.fill.circle", marked("Dot in a circle")},
    {"link", marked("Chain link")},
    {"list.bullet", marked("Bulleted list")},
    {"location", marked("Compass needle")},
    {"lock", marked("Closed lock")},
    {"lock.open", marked("Open lock")},
    {"magnifyingglass", marked("Magnifying glass")},
    {"memorychip", marked("Memory chip")},
    {"minus", marked("Minus sign")},
    {"moon", marked("Moon")},
    {"moon.stars", marked("Moon and stars")},
    {"music.note", marked("Musical note")},
    {"network", marked("Connected globe")},
    {"note.text", marked("Written note")},
    {"paperclip", marked("Paper clip")},
    {"pause", marked("Two bars")},
    {"pawprint", marked("Paw print")},
    {"pencil", marked("Pencil")},
    {"person", marked("One person")},
    {"person.2", marked("Two people")},
    {"photo", marked("Photograph")},
    {"pin", marked("Drawing pin")},
    {"play", marked("Triangle to the right")},
    {"plus", marked("Plus sign")},
    {"plus.circle", marked("Plus sign in a circle")},
    {"questionmark.square", marked("Question mark in a square")},
    {"rectangle.and.hand.point.up.left", marked("Pointing hand")},
    {"repeat", marked("Arrows in a ring")},
    {"sparkle", marked("Sparkle")},
    {"speaker.wave.2", marked("Loudspeaker")},
    {"square.and.arrow.up", marked("Arrow out of a box")},
    {"square.grid.2x2", marked("Four squares")},
    {"star", marked("Star")},
    {"stop", marked("Square")},
    {"stopwatch", marked("Hand-held stopwatch")},
    {"sun.max", marked("Sun")},
    {"tablecells", marked("Table of cells")},
    {"thermometer", marked("Thermometer")},
    {"timer", marked("Clock running down")},
    {"trash", marked("Waste bin")},
    {"tray.full", marked("Full tray")},
    {"wifi", marked("Wireless signal")},
    {"wind", marked("Wind")},
    {"xmark", marked("Cross")},
    {"xmark.circle", marked("Cross in a circle")},
});
static_assert(std::ranges::is_sorted(symbolTitles, {}, &SymbolTitle::name));

constexpr std::string_view filled = ".fill";

} // namespace

QString symbolTitle(std::string_view name) {
  const bool isFilled = name.ends_with(filled);
  const auto shape = isFilled ? name.substr(0, name.size() - filled.size()) : name;
  const auto found = std::ranges::lower_bound(symbolTitles, shape, {}, &SymbolTitle::name);
  if (found == symbolTitles.end() || found->name != shape)
    return utf8(name);
  const auto title = worded(found->title);
  // Told from its outline where there is one.
  return isFilled && hasSymbol(shape) ? worded("{name}, filled", {{"name", title}}) : title;
}

} // namespace tavrin
