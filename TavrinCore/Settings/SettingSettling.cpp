#include "TavrinCore/Settings/SettingSettling.h"

#include "TavrinCore/Base/FileURL.h"
#include "TavrinCore/Kinds/Bookmarks/Bookmarks.h"
#include "TavrinCore/Kinds/Converter/ConverterSettings.h"
#include "TavrinCore/Kinds/Converter/ConverterUnits.h"
#include "TavrinCore/Kinds/Files/FilesSettings.h"
#include "TavrinCore/Kinds/Files/ScreenshotSettings.h"
#include "TavrinCore/Kinds/Files/ShelfSettings.h"
#include "TavrinCore/Kinds/Shortcut/ShortcutSettings.h"
#include "TavrinCore/Kinds/Weather/WeatherSettings.h"
#include "TavrinCore/Settings/SettingError.h"
#include "TavrinCore/Settings/SettingRoles.h"
#include "TavrinCore/Settings/SettingText.h"
#include "TavrinCore/Text/Texts.h"

#include <algorithm>
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
    throw SettingError(
        translated("\"{key}\" must be a unit of {category}: one of {symbols}, not \"{unit}\"",
                   {{"key", key},
                    {"category", nameOf(after.category)},
                    {"symbols", alternatives(symbols)},
                    {"unit", unit}}));
  };
  settle("from", before.from, after.from, *usual.from);
  settle("to", before.to, after.to, *usual.to);
}

/// The forecast is that of the coordinates; the name alone would stand over another place's.
void settleOne(const WeatherSettings& before, WeatherSettings& after, const SettingChange& change) {
  const auto names = [&](const char* key) { return change.named.contains(key); };
  const bool hasMoved = after.latitude != before.latitude || after.longitude != before.longitude;
  if (hasMoved && after.latitude.has_value() != after.longitude.has_value())
    throw SettingError(
        translated("\"latitude\" and \"longitude\" go together; give both, or null for both"));
  const bool isRenamed = after.cityName != before.cityName;
  if (isRenamed && after.cityName && !hasMoved && !(names("latitude") && names("longitude")))
    throw SettingError(
        translated("\"cityName\" goes with \"latitude\" and \"longitude\": give all three, or "
                   "search for the place in the widget's panel"));
  if (hasMoved && !isRenamed && !names("cityName"))
    after.cityName.reset();
}

void settlePaths(const char* key, const std::vector<std::string>& before,
                 std::vector<std::string>& after, const SettingChange& change) {
  for (auto& path : after) {
    if (std::ranges::count(before, path) > 0)
      continue;
    const auto absolute = pathOfText(path, change.system.home);
    if (!absolute)
      throw SettingError(translated("\"{key}\" must be absolute paths, not \"{path}\"",
                                    {{"key", key}, {"path", path}}));
    path = pathText(*absolute);
  }
}

void settleOne(const ShelfSettings& before, ShelfSettings& after, const SettingChange& change) {
  settlePaths("paths", before.paths, after.paths, change);
}

void settleOne(const FilesSettings& before, FilesSettings& after, const SettingChange& change) {
  settlePaths("folders", before.folders, after.folders, change);
}

void settlePath(const char* key, const std::optional<std::string>& before,
                std::optional<std::string>& after, const SettingChange& change) {
  if (!after)
    return;
  const auto was = before ? std::vector{*before} : std::vector<std::string>();
  std::vector<std::string> is{*after};
  settlePaths(key, was, is, change);
  after = is.front();
}

void settleOne(const ScreenshotSettings& before, ScreenshotSettings& after,
               const SettingChange& change) {
  settlePath("folder", before.folder, after.folder, change);
}

void settleOne(const ShortcutSettings& before, ShortcutSettings& after,
               const SettingChange& change) {
  settlePath("workingFolder", before.workingFolder, after.workingFolder, change);
}

/// Addresses as a browser writes them; those that cannot be are left to the field's own check.
void settleOne(const BookmarkSettings& before, BookmarkSettings& after, const SettingChange&) {
  const auto places = allBookmarks(after);
  if (places.size() > mostBookmarks && places.size() > allBookmarks(before).size())
    throw SettingError(translated("there is no room for more than {most} links",
                                  {{"most", static_cast<int>(mostBookmarks)}}));
  for (const auto& place : places) {
    auto& list = place.folder ? after.folders[*place.folder].bookmarks : after.bookmarks;
    if (const auto address = WebAddress::from(list[place.index].url))
      list[place.index].url = address->url;
  }
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
  settleAnyOf<BookmarkSettings, ConverterSettings, WeatherSettings, ShelfSettings, FilesSettings,
              ScreenshotSettings, ShortcutSettings>(after, change);
  const auto settings = settingsJSON(after);
  if (const auto clause = faultInChanges(describeSettings(after), settingsJSON(change.before),
                                         settings, change.system);
      !clause.empty())
    throw SettingError(clause);
}

} // namespace tavrin
