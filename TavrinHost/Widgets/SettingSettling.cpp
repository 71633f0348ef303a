#include "TavrinHost/Widgets/SettingSettling.h"

#include "TavrinCore/Base/FileURL.h"
#include "TavrinCore/Kinds/Converter/ConverterUnits.h"
#include "TavrinHost/HostError.h"
#include "TavrinHost/Widgets/SettingText.h"

#include <algorithm>
#include <cctype>
#include <fmt/format.h>

namespace tavrin {
namespace {

/// A unit belongs to a category. With another category, units that were left as they are make way
/// for its usual ones; one that was chosen must be the category's own.
void settleOne(const ConverterSettings& before, ConverterSettings& after, const SettingChange&) {
  const Conversion usual(after);
  const auto settle = [&](const char* key, const std::string& old, std::string& unit,
                          const ConverterUnit& fallback) {
    if (findUnit(after.category, unit) != nullptr)
      return;
    if (unit == old) {
      unit = fallback.symbol;
      return;
    }
    std::vector<std::string> symbols;
    for (const auto& known : converterUnits(after.category))
      symbols.emplace_back(known.symbol);
    throw HostError(ExitCode::refusedValue,
                    fmt::format("\"{}\" must be a unit of {}: one of {}, not \"{}\"", key,
                                nameOf(after.category), alternatives(symbols), unit));
  };
  settle("from", before.from, after.from, *usual.from);
  settle("to", before.to, after.to, *usual.to);
}

/// The forecast is that of the coordinates; the name alone would stand over another place's.
void settleOne(const WeatherSettings& before, WeatherSettings& after, const SettingChange& change) {
  const auto names = [&](const char* key) { return change.named.contains(key); };
  const bool hasMoved = after.latitude != before.latitude || after.longitude != before.longitude;
  if (hasMoved && after.latitude.has_value() != after.longitude.has_value())
    throw HostError(ExitCode::refusedValue,
                    "\"latitude\" and \"longitude\" go together; give both, or null for both");
  const bool isRenamed = after.cityName != before.cityName;
  if (isRenamed && after.cityName && !hasMoved && !(names("latitude") && names("longitude")))
    throw HostError(ExitCode::refusedValue,
                    "\"cityName\" goes with \"latitude\" and \"longitude\": give all three, or "
                    "search for the place in the widget's panel");
  if (hasMoved && !isRenamed && !names("cityName"))
    after.cityName.reset();
}

void settlePaths(const char* key, const std::vector<std::string>& before,
                 std::vector<std::string>& after, const SettingChange& change) {
  for (auto& path : after) {
    if (std::ranges::count(before, path) > 0)
      continue;
    const auto absolute = pathOfText(path, change.home);
    if (!absolute)
      throw HostError(ExitCode::refusedValue,
                      fmt::format("\"{}\" must be absolute paths, not \"{}\"", key, path));
    path = pathText(*absolute);
  }
}

void settleOne(const ShelfSettings& before, ShelfSettings& after, const SettingChange& change) {
  settlePaths("paths", before.paths, after.paths, change);
}

void settleOne(const FilesSettings& before, FilesSettings& after, const SettingChange& change) {
  settlePaths("folders", before.folders, after.folders, change);
}

void requireColour(const std::string& before, const std::string& after) {
  const auto isDigit = [](unsigned char c) { return std::isxdigit(c) != 0; };
  if (after != before &&
      !(after.size() == 7 && after.front() == '#' && std::ranges::all_of(after.substr(1), isDigit)))
    throw HostError(
        ExitCode::refusedValue,
        fmt::format("\"colorHex\" must be a colour such as #FBBF24, not \"{}\"", after));
}

void settleOne(const NoteSettings& before, NoteSettings& after, const SettingChange&) {
  requireColour(before.colorHex, after.colorHex);
}

void settleOne(const ShortcutSettings& before, ShortcutSettings& after, const SettingChange&) {
  requireColour(before.colorHex, after.colorHex);
}

template <class... Settings>
void settleAnyOf(DockWidget::Kind& after, const SettingChange& change) {
  const auto settleIf = [&]<class S>(const S* before, S* settings) {
    if (settings != nullptr)
      settleOne(*before, *settings, change);
  };
  (settleIf(change.before.get<Settings>(), after.get<Settings>()), ...);
}

} // namespace

void settle(DockWidget::Kind& after, const SettingChange& change) {
  settleAnyOf<ConverterSettings, WeatherSettings, ShelfSettings, FilesSettings, NoteSettings,
              ShortcutSettings>(after, change);
}

} // namespace tavrin
